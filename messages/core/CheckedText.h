#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "messages/core/Json.h"
#include "messages/core/JsonIndex.h"
#include "messages/core/JsonScan.h"

namespace Orvu {

class JsonValue;
class ReadingWitness;

/// A text that was checked once, front to back, to see whether cJSON_Parse accepts it. Its values can then be read
/// where they are. The text must live, and not change, as long as this object and its values are in use.
///
/// The index of its long values takes 8 bytes for each object and array, 16 MiB at most, and for each text, key or run
/// of white space above 256 bytes.
class CheckedText {
public:
    enum class Refusal : unsigned char { None, NotJson, TooLarge, OutOfMemory };

    /// More objects and arrays are too many, as 4 GiB of text are too much.
    static constexpr std::uint32_t kMaxContainers = 2097152;

    /// `text` ends with a NUL; null is not JSON.
    explicit CheckedText(const char* text);

    explicit operator bool() const { return refusal_ == Refusal::None; }
    Refusal refusal() const { return refusal_; }
    /// Where the text stopped being JSON, in bytes from its beginning; 0 when something else was wrong or nothing.
    std::size_t refusedAt() const { return refusal_ == Refusal::NotJson ? root_ : 0; }

    /// The value of the text; none when it was refused.
    JsonValue value() const;

    // For reading it into a message. The text may be held by that very message.

    /// Before code of an application runs, which may change or release what holds the text: reads on in a copy.
    /// Throws std::bad_alloc.
    void keep() const;
    /// The same before `field` is changed, if that holds the text.
    void keepFrom(const std::string& field) const;
    /// Before an object of this size is made from the text: throws TooMuch when all of them together would take more
    /// than 16 MiB and twice the text.
    void takeRoom(std::size_t size) const;
    struct TooMuch {};

    /// The witness that sees what contracts ask of the text; usually null.
    ReadingWitness* witness() const { return witness_; }
    /// From now on `witness` does, and the text has room for objects as if it had not been read yet.
    void setWitness(ReadingWitness* witness);

    /// The text, without its NUL.
    std::string_view text() const { return {begin_, size_}; }

private:
    friend class JsonItems;
    friend class JsonValue;
    friend class MemberFinder;
    friend class TextRuns;

    static constexpr int kFewWhite = 8;

    void check();
    const char* next(const char* at);
    const char* enter(const char* at);
    const char* leave(const char* at);
    const char* key(const char* at);
    const char* overWhite(const char* at)
    {
        for (int i = 0; i < kFewWhite; ++i, ++at)
            if (!isWhite(*at)) return at;
        return overMuchWhite(at);
    }
    const char* overMuchWhite(const char* at);
    const char* scalar(const char* at);
    const char* word(const char* at);
    const char* number(const char* at);
    const char* rareNumber(const char* at);
    const char* string(const char* at);
    const char* escapedString(const char* begin, const char* at);
    const char* oddString(const char* begin);
    const char* indexed(const char* begin, const char* end);
    const char* refuse(const char* at);
    const char* refuse(Refusal why);

    // Steps through a text that was accepted. `entry` is the first of the index that begins at `at` or later, and goes
    // along.
    const char* afterValue(const char* at, std::uint32_t& entry) const;
    const char* afterString(const char* at, std::uint32_t& entry) const;
    bool isPlain(const char* at) const;
    const char* afterLong(const char* at, std::uint32_t& entry) const;
    const char* skipWhite(const char* at, std::uint32_t& entry) const
    {
        for (int i = 0; i < kFewWhite; ++i, ++at)
            if (!isWhite(*at)) return at;
        return skipMuchWhite(at, entry);
    }
    const char* skipMuchWhite(const char* at, std::uint32_t& entry) const;
    const char* inside(const char* at, std::uint32_t& entry) const;
    const char* afterComma(const char* at, std::uint32_t& entry) const;
    const char* afterColon(const char* at, std::uint32_t& entry) const;

    const char* end() const { return begin_ + size_; }  // its NUL
    std::uint32_t offset(const char* at) const { return static_cast<std::uint32_t>(at - begin_); }

    mutable const char* begin_;
    mutable JsonText kept_;  // where it begins once keep() was called
    const std::size_t size_;
    mutable std::size_t room_;  // for objects that are made from it
    struct Plain {
        std::uint32_t at = ~0u;
        std::uint32_t size = 0;
    };
    mutable Plain plain_;  // the last text without escapes that was read or stepped over: the other often follows
    ReadingWitness* witness_ = nullptr;
    JsonIndex index_;
    std::uint32_t containers_ = 0;  // objects and arrays so far
    std::uint32_t root_ = 0;        // where the value begins, or the text stops being JSON
    std::uint32_t open_ = 0;        // the entry of the innermost one that has not ended
    std::uint16_t depth_ = 0;       // how many have not
    char closer_ = '\0';            // what ends the innermost; NUL outside of all
    Refusal refusal_ = Refusal::None;
};

}  // namespace Orvu
