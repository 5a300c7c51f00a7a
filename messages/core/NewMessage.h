#pragma once

#include <type_traits>

#include "orvu/Serializable.h"

namespace Orvu {

/// A new, empty message; the caller's. A class that serves several types is made for `type`, a screen with empty texts.
template <class Message>
Message* newMessage([[maybe_unused]] DataType type)
{
    if constexpr (std::is_default_constructible_v<Message>) {
        return new Message;
    } else if constexpr (std::is_constructible_v<Message, DataType>) {
        return new Message(type);
    } else if constexpr (std::is_constructible_v<Message, const char*>) {
        return new Message("");
    } else {
        return new Message("", "");
    }
}

}  // namespace Orvu
