#include "listener/JsonScanner.h"

#include <cstring>

namespace Orvu {
namespace {

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte)
{
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

bool isOneOf(char byte, const char* bytes)
{
    return byte != '\0' && std::strchr(bytes, byte) != nullptr;
}

bool isWhite(char byte)
{
    return isOneOf(byte, " \t\r\n");
}

}  // namespace

JsonScanner::Verdict JsonScanner::go(State state)
{
    state_ = state;
    return Verdict::More;
}

JsonScanner::Verdict JsonScanner::take(char byte)
{
    if (state_ <= State::AfterItem) return isWhite(byte) ? Verdict::More : takeBetween(byte);
    if (state_ <= State::HexDigits) return takeInString(byte);
    if (state_ <= State::AfterWord) return takeInWord(byte);
    return takeInNumber(byte);
}

std::size_t JsonScanner::plainBytes(std::string_view bytes) const
{
    if (state_ != State::String) return 0;
    std::size_t size = 0;
    while (size < bytes.size() && bytes[size] != '"' && bytes[size] != '\\' &&
           static_cast<unsigned char>(bytes[size]) >= ' ')
        ++size;
    return size;
}

void JsonScanner::restart()
{
    state_ = State::Value;
    open_.clear();  // its memory serves the next value
}

bool JsonScanner::isWhole() const
{
    return open_.empty() && (state_ == State::AfterWord || endsNumber(state_));
}

JsonScanner::Verdict JsonScanner::takeBetween(char byte)
{
    const bool closes = !open_.empty() && byte == open_.back();
    switch (state_) {
        case State::FirstItem:
            return closes ? close() : begin(byte);
        case State::FirstKey:
            if (closes) return close();
            [[fallthrough]];
        case State::Key:
            isKey_ = true;
            return byte == '"' ? go(State::String) : Verdict::Wrong;
        case State::Colon:
            return byte == ':' ? go(State::Value) : Verdict::Wrong;
        case State::AfterItem:
            if (closes) return close();
            if (byte != ',') return Verdict::Wrong;
            return go(open_.back() == ']' ? State::Value : State::Key);
        default:
            return begin(byte);
    }
}

JsonScanner::Verdict JsonScanner::begin(char byte)
{
    isKey_ = false;
    switch (byte) {
        case '{':
            return open('}', State::FirstKey);
        case '[':
            return open(']', State::FirstItem);
        case '"':
            return go(State::String);
        case 't':
            return beginWord("rue");
        case 'f':
            return beginWord("alse");
        case 'n':
            return beginWord("ull");
        case '-':
            return go(State::Minus);
        default:
            state_ = nextOfNumber(State::Minus, byte);
            return state_ == State::NoNumber ? Verdict::Wrong : Verdict::More;
    }
}

JsonScanner::Verdict JsonScanner::open(char closing, State inside)
{
    if (open_.size() == kMostLevels) return Verdict::Wrong;
    open_ += closing;
    return go(inside);
}

JsonScanner::Verdict JsonScanner::close()
{
    open_.pop_back();
    return open_.empty() ? Verdict::Whole : go(State::AfterItem);
}

JsonScanner::Verdict JsonScanner::takeInString(char byte)
{
    if (state_ == State::HexDigits) {
        if (!isHexDigit(byte)) return Verdict::Wrong;
        return --hexDigits_ > 0 ? Verdict::More : go(State::String);
    }
    if (state_ == State::Escape) {
        hexDigits_ = 4;
        if (byte == 'u') return go(State::HexDigits);
        return isOneOf(byte, "\"\\/bfnrt") ? go(State::String) : Verdict::Wrong;
    }
    if (byte == '"') return endString();
    if (byte == '\\') return go(State::Escape);
    return static_cast<unsigned char>(byte) < ' ' ? Verdict::Wrong : Verdict::More;
}

JsonScanner::Verdict JsonScanner::endString()
{
    if (isKey_) return go(State::Colon);
    return open_.empty() ? Verdict::Whole : go(State::AfterItem);
}

JsonScanner::Verdict JsonScanner::beginWord(const char* rest)
{
    word_ = rest;
    return go(State::Word);
}

JsonScanner::Verdict JsonScanner::takeInWord(char byte)
{
    if (state_ == State::AfterWord) return takeAfterScalar(byte);
    if (byte != *word_) return Verdict::Wrong;
    if (*++word_ != '\0') return Verdict::More;
    return go(open_.empty() ? State::AfterWord : State::AfterItem);
}

JsonScanner::State JsonScanner::nextOfNumber(State state, char byte)
{
    const State afterDigits = byte == '.' ? State::Point : isOneOf(byte, "eE") ? State::E : State::NoNumber;
    switch (state) {
        case State::Minus:
            return byte == '0' ? State::Zero : isDigit(byte) ? State::Digits : State::NoNumber;
        case State::Zero:
            return afterDigits;
        case State::Digits:
            return isDigit(byte) ? State::Digits : afterDigits;
        case State::Point:
            return isDigit(byte) ? State::Fraction : State::NoNumber;
        case State::Fraction:
            if (afterDigits == State::E) return State::E;
            return isDigit(byte) ? State::Fraction : State::NoNumber;
        case State::E:
            if (isOneOf(byte, "+-")) return State::ESign;
            [[fallthrough]];
        default:
            return isDigit(byte) ? State::Exponent : State::NoNumber;
    }
}

bool JsonScanner::endsNumber(State state)
{
    return state == State::Zero || state == State::Digits || state == State::Fraction || state == State::Exponent;
}

JsonScanner::Verdict JsonScanner::takeInNumber(char byte)
{
    const State next = nextOfNumber(state_, byte);
    if (next != State::NoNumber) return go(next);
    if (!endsNumber(state_)) return Verdict::Wrong;
    if (open_.empty()) return takeAfterScalar(byte);
    go(State::AfterItem);
    return take(byte);
}

/// Numbers and words at top level have no end of their own. What follows one directly may be the next value, or show
/// that it was a piece of some other text, such as a date.
JsonScanner::Verdict JsonScanner::takeAfterScalar(char byte) const
{
    return isWhite(byte) || isOneOf(byte, "{[\"") ? Verdict::Before : Verdict::Wrong;
}

}  // namespace Orvu
