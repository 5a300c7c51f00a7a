#pragma once

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "orvu/PairingScreens.h"
#include "orvu/Serializable.h"

namespace OrvuTool {

/// The text that `message` writes; empty when it cannot be written.
inline std::string writtenText(Orvu::Serializable& message)
{
    char* const text = message.serialize();
    const std::string copy = text != nullptr ? text : "";
    std::free(text);
    return copy;
}

/// A message that writes a given text, byte for byte.
class TextMessage : public Orvu::Serializable {
public:
    TextMessage(Orvu::DataType type, std::string text) : Serializable(type), text_(std::move(text)) {}

    char* serialize() override { return strdup(text_.c_str()); }
    bool deserialize(const char*) override { return false; }
    using Serializable::deserialize;

private:
    std::string text_;
};

/// The same for a confirmation screen: the client must see its `dispose`, to know whether it waits for the user.
class ConfirmationTextMessage : public Orvu::ConfirmationScreen {
public:
    explicit ConfirmationTextMessage(std::string text) : ConfirmationScreen(""), text_(std::move(text)) {}

    char* serialize() override { return strdup(text_.c_str()); }

private:
    std::string text_;
};

}  // namespace OrvuTool
