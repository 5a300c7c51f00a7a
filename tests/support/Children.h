#pragma once

#include <string>

#include "support/Messages.h"

/// \file
/// Classes that an application could derive from a message, to take its place in lists and containers.

namespace OrvuTests {

/// Overrides nothing; all the same it is another class than the library's.
template <class Message>
class Inheriting : public Message {
public:
    using Message::Message;
};

/// Overrides both functions to do what they did.
template <class Message>
class Forwarding : public Message {
public:
    using Message::Message;
    char* serialize() override { return Message::serialize(); }
    bool deserialize(const char* text) override { return Message::deserialize(text); }
    using Message::deserialize;
};

/// Writes whatever the test says.
template <class Message>
class Saying : public Message {
public:
    explicit Saying(std::string text) : text_(std::move(text)) {}
    char* serialize() override { return textOfAnApplication(text_); }

private:
    std::string text_;
};

/// Writes nothing.
template <class Message>
class Silent : public Message {
public:
    char* serialize() override { return nullptr; }
};

/// Reads nothing, keeps the text that it was given and answers what the test says.
template <class Message>
class Listening : public Message {
public:
    explicit Listening(bool answer) : answer_(answer) {}
    bool deserialize(const char* text) override
    {
        heard = text;
        return answer_;
    }
    using Message::deserialize;

    std::string heard;

private:
    const bool answer_;
};

/// Counts in `destroyed` that it was deleted.
template <class Message>
class Counted : public Message {
public:
    explicit Counted(int& destroyed) : destroyed_(destroyed) {}
    ~Counted() override { ++destroyed_; }

private:
    int& destroyed_;
};

}  // namespace OrvuTests
