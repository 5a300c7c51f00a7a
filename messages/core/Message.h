#pragma once

#include <type_traits>
#include <utility>

#include "messages/core/Contract.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"
#include "messages/core/ThreadEnd.h"

namespace Orvu {

/// The text of a message by its contract, made by `malloc`, the caller's; null when it cannot be written.
char* writeText(Serializable& message, const Contract& contract);

/// The text of an object whose members `members` writes, for messages that have a second text; otherwise as above.
template <class Members>
char* writeObject(PrintStyle style, Members members)
{
    try {
        JsonWriter json(style);
        json.object([&] { members(json); });
        return json.take();
    } catch (...) {
        passThreadEndOn();
        return nullptr;  // out of memory, or a child of an application's class that throws
    }
}

/// Reads members into a message: the second function of a contract.
using Reading = void (*)(JsonReader& json, Serializable& message);

/// Reads a message from a text of its own. False for a text that is null, not JSON or faulty, and when out of memory;
/// `std::invalid_argument` and `std::out_of_range` of number texts pass.
bool readText(Serializable& message, Reading read, const char* text);

/// The same with the reason: `error` becomes 1 for a text that is null or not JSON, else the code of the message's
/// fault.
bool readText(Serializable& message, Reading read, const char* text, unsigned char& error);

/// The same from a text that was checked before.
bool readValue(Serializable& message, Reading read, JsonValue value);
bool readValue(Serializable& message, Reading read, JsonValue value, unsigned char& error);

/// Stands for a message of exactly one class: converts to it, and not to a class that it derives from.
template <class Message>
struct Exactly {
    template <class Wanted, class = std::enable_if_t<std::is_same_v<Wanted, Message>>>
    operator Wanted&() const;
};

/// Whether a class has a `write` and a `read` of its own; those of a class that it derives from do not count.
template <class Message, class = void>
inline constexpr bool hasItsOwnPair = false;
template <class Message>
inline constexpr bool
    hasItsOwnPair<Message, std::void_t<decltype(write(std::declval<JsonWriter&>(), Exactly<Message>())),
                                       decltype(read(std::declval<JsonReader&>(), Exactly<Message>()))>> = true;

/// Defines the contract of a class from its functions `write(JsonWriter&, Class&)` and `read(JsonReader&, Class&)`.
#define CONTRACT(Class, Style)                                                                          \
    template <>                                                                                         \
    const Contract& contractOf<Class>()                                                                 \
    {                                                                                                   \
        static_assert(hasItsOwnPair<Class>, #Class " needs a write and a read function of its own");    \
        static constexpr Contract contract = {                                                          \
            [](JsonWriter& json, Serializable& message) { write(json, static_cast<Class&>(message)); }, \
            [](JsonReader& json, Serializable& message) { read(json, static_cast<Class&>(message)); },  \
            PrintStyle::Style,                                                                          \
            sizeof(Class) + kHeldSize<Class>,                                                           \
            &typeid(Class),                                                                             \
        };                                                                                              \
        return contract;                                                                                \
    }

/// serialize() and deserialize(text) of a class by its contract.
#define ENTRY_POINTS(Class)                                     \
    char* Class::serialize()                                    \
    {                                                           \
        return writeText(*this, contractOf<Class>());           \
    }                                                           \
    bool Class::deserialize(const char* text)                   \
    {                                                           \
        return readText(*this, contractOf<Class>().read, text); \
    }

/// Closes what a message says on the wire: its contract, as other messages embed it, and its entry points.
#define MESSAGE(Class, Style) \
    CONTRACT(Class, Style)    \
    ENTRY_POINTS(Class)

}  // namespace Orvu
