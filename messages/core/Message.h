#pragma once

#include "messages/core/Contract.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"

namespace Orvu {

/// The text of a message by its contract, made by `malloc`, the caller's; null when it cannot be written.
char* writeText(Serializable& message, const Contract& contract, PrintStyle style);

/// The text of an object whose members `members` writes, for messages that have a second text; otherwise as above.
template <class Members>
char* writeObject(PrintStyle style, Members members)
{
    try {
        JsonWriter json(style);
        json.object([&] { members(json); });
        return json.take();
    } catch (...) {
        return nullptr;  // memory, or a child of an application's class that throws
    }
}

/// Reads a message by its contract from its own text. False for a null text, one that is no JSON, a faulty one, and memory
/// that cannot be had; `std::invalid_argument` and `std::out_of_range` of number texts pass.
bool readText(Serializable& message, const Contract& contract, const char* text);

/// The same with the reason: `error` becomes 1 for a text that is null or no JSON, else the code of the message's fault.
bool readText(Serializable& message, const Contract& contract, const char* text, unsigned char& error);

/// The same from the tree of the text.
bool readTree(Serializable& message, const Contract& contract, const cJSON& tree);
bool readTree(Serializable& message, const Contract& contract, const cJSON& tree, unsigned char& error);

/// Compiles only for the exact functions of `Message`, so that a class cannot borrow those of a class that it derives from.
template <class Message>
constexpr bool hasContract(void (*)(JsonWriter&, Message&), void (*)(JsonReader&, Message&))
{
    return true;
}

/// serialize() and deserialize(text) of a message that prints in the given style.
#define ENTRY_POINTS(Message, Style)                                       \
    char* Message::serialize()                                             \
    {                                                                      \
        static_assert(hasContract<Message>(&write, &read));                \
        return writeText(*this, contractOf<Message>(), PrintStyle::Style); \
    }                                                                      \
    bool Message::deserialize(const char* text)                            \
    {                                                                      \
        return readText(*this, contractOf<Message>(), text);               \
    }

}  // namespace Orvu
