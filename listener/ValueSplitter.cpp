#include "listener/ValueSplitter.h"

#include <algorithm>

namespace Orvu {
namespace {

constexpr std::size_t kKeptRoom = 1024 * 1024;  // bytes; more goes back to the system after a long value

bool isWhite(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

}  // namespace

void ValueSplitter::add(char* bytes, std::size_t size)
{
    bytes_ = bytes;
    size_ = size;
    begin_ = at_ = 0;
    while (at_ < size_)
        step();
    keepRest();
    bytes_ = nullptr;
    size_ = begin_ = at_ = 0;
}

void ValueSplitter::step()
{
    if (in_ == In::Blanks) return skipBlanks();
    if (in_ == In::Text) return scanText();
    scan();
}

/// Blanks are held until it is known whether they belong to something that is not JSON.
void ValueSplitter::skipBlanks()
{
    const char byte = bytes_[at_];
    if (!isWhite(byte)) {
        in_ = In::Value;
        return;
    }
    ++at_;
    if (byte == '\n') {
        held_.clear();
        length_ = 0;
        begin_ = at_;
    } else if (++length_ > longest_) {
        becomeText(In::Text);
    }
}

void ValueSplitter::scan()
{
    const std::size_t plain = scanner_.plainBytes({bytes_ + at_, size_ - at_});
    at_ += plain;
    if (!hold(plain) || at_ == size_) return;
    switch (scanner_.take(bytes_[at_])) {
        case JsonScanner::Verdict::More:
            ++at_;
            hold(1);
            break;
        case JsonScanner::Verdict::Whole:
            ++at_;
            hold(1);
            endValue();
            break;
        case JsonScanner::Verdict::Before:
            endValue();
            break;
        default:
            giveUp();
    }
}

/// Counts bytes of the value; false when they make it a long one.
bool ValueSplitter::hold(std::size_t size)
{
    length_ += size;
    if (in_ == In::LongValue || length_ <= longest_) return true;
    becomeText(In::LongValue);
    return false;
}

void ValueSplitter::scanText()
{
    while (at_ < size_ && bytes_[at_] != '\n' && bytes_[at_] != '{' && bytes_[at_] != '[')
        ++at_;
    if (at_ == size_) return;
    if (bytes_[at_] == '\n') ++at_;
    handOverText();
    in_ = In::Blanks;
}

void ValueSplitter::endValue()
{
    if (in_ == In::LongValue) {
        handOverText();
        endLine();
    } else if (held_.empty()) {
        give({bytes_ + begin_, at_ - begin_}, true);
    } else {
        held_.append(bytes_ + begin_, at_ - begin_);
        give(held_, true);
    }
    if (held_.capacity() > kKeptRoom) held_ = std::string();
    held_.clear();
    begin_ = at_;
    length_ = 0;
    scanner_.restart();
    in_ = In::Blanks;
}

void ValueSplitter::giveUp()
{
    becomeText(In::Text);
    length_ = 0;
    scanner_.restart();
}

/// The bytes that are held, of blanks or of a value, and those that follow are text.
void ValueSplitter::becomeText(In in)
{
    in_ = in;
    if (held_.empty()) return;
    give(held_, false);
    held_ = std::string();
}

void ValueSplitter::handOverText()
{
    give({bytes_ + begin_, at_ - begin_}, false);
    begin_ = at_;
    length_ = 0;
}

void ValueSplitter::give(std::string_view bytes, bool isValue)
{
    if (isValue)
        bytes.remove_prefix(
            static_cast<std::size_t>(std::find_if_not(bytes.begin(), bytes.end(), isWhite) - bytes.begin()));
    if (bytes.empty()) return;
    // Never of a constant: it is what add() was given, or held.
    char& after = const_cast<char&>(bytes.data()[bytes.size()]);
    const char before = after;
    after = '\0';
    isValue ? sink_.value(bytes) : sink_.text(bytes);
    after = before;
    isLineOpen_ = !isValue && bytes.back() != '\n';
}

void ValueSplitter::endLine()
{
    if (isLineOpen_) sink_.endText();
    isLineOpen_ = false;
}

void ValueSplitter::keepRest()
{
    if (in_ == In::Text || in_ == In::LongValue)
        handOverText();
    else
        held_.append(bytes_ + begin_, at_ - begin_);
}

void ValueSplitter::finish()
{
    if (in_ == In::Value && scanner_.isWhole())
        endValue();
    else if (in_ == In::Value)
        giveUp();
    held_.clear();
    length_ = 0;
    scanner_.restart();
    in_ = In::Blanks;
    endLine();
}

}  // namespace Orvu
