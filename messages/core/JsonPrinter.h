#pragma once

#include <cstddef>

#include "messages/core/Contract.h"
#include "messages/core/TextBuffer.h"

namespace Orvu {

/// Prints JSON values one after the other, byte for byte as cJSON prints the same tree: quotes and escapes, commas,
/// line breaks and indents. A failure (out of memory, or more than kMaxDepth levels) makes every further call do
/// nothing and take() null.
class JsonPrinter {
public:
    explicit JsonPrinter(PrintStyle style) : formatted_(style == PrintStyle::Formatted) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// Before the value of an object's next member. For our own keys, which need no escapes.
    void key(const char* key);
    /// The same for any other key, which is escaped; null counts as "".
    void anyKey(const char* key);
    /// Before the next value of an array.
    void element();

    void text(const char* value);  ///< Null prints as "".
    void number(int value);
    void number(unsigned value);
    void boolean(bool value);
    void null();
    /// A value that is JSON already.
    void raw(const char* json);

    /// A place to which the text can be cut back, comma included.
    struct Mark {
        std::size_t size;
        bool first;
    };
    Mark here() const { return {text_.size(), first_}; }
    void backTo(Mark mark);

    void fail() { text_.fail(); }
    bool failed() const { return text_.failed(); }

    /// The finished text, made by `malloc`, the caller's from then on; null after a failure.
    char* take() { return text_.take(); }

private:
    void enter(char bracket);
    void newMember();
    void colon();
    void indent();
    void escaped(unsigned char c);

    TextBuffer text_;
    const bool formatted_;
    bool first_ = true;  // the innermost object or array is still empty
    int depth_ = 0;      // objects and arrays begun and not ended
};

}  // namespace Orvu
