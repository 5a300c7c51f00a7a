#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "listener/JsonScanner.h"

namespace Orvu {

/// Divides a stream of JSON values, in which only the values themselves show where they end. The stream may be cut
/// anywhere: the values are the same.
///
/// What is not JSON is text, from the byte at which its value would begin to the end of the line or to the next "{" or
/// "[", where a value may begin again. A value above a limit is text, too. White space between the values is left out.
class ValueSplitter {
public:
    static constexpr std::size_t kLongestValue = 64 * 1024 * 1024;  ///< Bytes.

    /// Receives what the splitter finds. The bytes are valid during the call, and a NUL follows them.
    class Sink {
    public:
        virtual ~Sink() = default;
        virtual void value(std::string_view json) = 0;  ///< A whole value. It ends a text before it.
        virtual void text(std::string_view bytes) = 0;  ///< The next piece of text that is not JSON.
        virtual void endText() = 0;                     ///< A text is over that did not end with a line feed.
    };

    explicit ValueSplitter(Sink& sink, std::size_t longestValue = kLongestValue) : sink_(sink), longest_(longestValue)
    {}

    /// Takes the next bytes of the stream; the byte after them can be written, and is left as it was. Numbers, `true`,
    /// `false` and `null` are whole only when something follows them. Throws std::bad_alloc.
    void add(char* bytes, std::size_t size);

    /// The stream, or a message, has ended: hands over what was held back. Throws std::bad_alloc.
    void finish();

private:
    // What the bytes from begin_ on belong to.
    enum class In { Blanks, Value, LongValue, Text };

    void step();
    void skipBlanks();
    void scan();
    void scanText();
    bool hold(std::size_t size);
    void endValue();
    void giveUp();
    void becomeText(In in);
    void handOverText();
    void give(std::string_view bytes, bool isValue);
    void endLine();
    void keepRest();

    Sink& sink_;
    const std::size_t longest_;
    JsonScanner scanner_;
    In in_ = In::Blanks;
    std::string held_;         // what came before bytes_ of the blanks or the value
    std::size_t length_ = 0;   // of the blanks or the value so far
    bool isLineOpen_ = false;  // the last text did not end with a line feed
    char* bytes_ = nullptr;    // that add() was given
    std::size_t size_ = 0;
    std::size_t begin_ = 0;  // of the bytes that are not handed over yet
    std::size_t at_ = 0;     // the next byte
};

}  // namespace Orvu
