#pragma once

#include <typeinfo>

#include "orvu/Serializable.h"

namespace Orvu {

class JsonReader;
class JsonWriter;

// A message without a contract of its own must not compile.
void write(JsonWriter& json, Serializable& message) = delete;
void read(JsonReader& json, Serializable& message) = delete;

/// What a message class says on the wire: the one function that writes its members and the one that reads them.
struct Contract {
    void (*write)(JsonWriter& json, Serializable& message);
    void (*read)(JsonReader& json, Serializable& message);
    const std::type_info* type;  ///< The class itself; objects of classes derived from it write and read themselves.
};

/// The contract of a class: the functions `write(JsonWriter&, Message&)` and `read(JsonReader&, Message&)` of its family.
template <class Message>
const Contract& contractOf()
{
    static const Contract contract = {
        [](JsonWriter& json, Serializable& message) { write(json, static_cast<Message&>(message)); },
        [](JsonReader& json, Serializable& message) { read(json, static_cast<Message&>(message)); },
        &typeid(Message),
    };
    return contract;
}

}  // namespace Orvu
