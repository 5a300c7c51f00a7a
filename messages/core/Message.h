#pragma once

#include "messages/core/Contract.h"
#include "messages/core/JsonReader.h"
#include "messages/core/JsonWriter.h"

namespace Orvu {

/// The text of a message by its contract, made by `malloc`, the caller's; null when it cannot be written.
char* writeText(Serializable& message, const Contract& contract, PrintStyle style);

/// Reads a message by its contract from its own text. False for a null text, one that is no JSON, a faulty one, and memory
/// that cannot be had; `std::invalid_argument` and `std::out_of_range` of number texts pass.
bool readText(Serializable& message, const Contract& contract, const char* text);

/// The same from the tree of the text.
bool readTree(Serializable& message, const Contract& contract, const cJSON& tree);

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
