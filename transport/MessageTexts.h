#pragma once

#include <new>

#include "messages/core/Catalogue.h"
#include "messages/core/Json.h"
#include "messages/core/ThreadEnd.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// \file
/// The texts of messages, written and read on behalf of an exchange: an exception is a failure like any other.

/// The text of `message`; none for null and for what cannot be written. A class of the application's may throw
/// anything.
inline JsonText textOf(Serializable* message)
{
    try {
        return JsonText(message ? message->serialize() : nullptr);
    } catch (...) {
        passThreadEndOn();
        return nullptr;
    }
}

/// Switches the header flag of a message on while it lives.
class ShownHeader {
public:
    explicit ShownHeader(Serializable& message) : message_(message), before_(message.headerFlag_)
    {
        message.headerFlag_ = true;
    }
    ~ShownHeader() { message_.headerFlag_ = before_; }
    ShownHeader(const ShownHeader&) = delete;
    ShownHeader& operator=(const ShownHeader&) = delete;

private:
    Serializable& message_;
    const bool before_;
};

/// The same with its "HEADER", whatever its header flag says.
inline JsonText textWithHeader(Serializable& message)
{
    const ShownHeader shown(message);
    return textOf(&message);
}

/// A text that is not JSON is for the application; one for whose check memory ran out is not. Throws std::bad_alloc.
inline void requireMemory(const CheckedText& checked)
{
    if (checked.refusal() == CheckedText::Refusal::OutOfMemory) throw std::bad_alloc();
}

/// Whether `message` could be read from a text. Throws only std::bad_alloc.
inline bool isFilled(Serializable& message, const CheckedText& checked, const char* text)
{
    try {
        return fill(message, checked, text);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        passThreadEndOn();
        return false;
    }
}

}  // namespace Orvu
