#pragma once

#include <memory>
#include <optional>
#include <string>

#include "orvu/Typed.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"

namespace OrvuTests {

/// The text of a message that is nothing but its type.
inline std::string headerOnly(const std::string& type)
{
    return "{\n\t\"HEADER\":\t\"" + type + "\"\n}";
}

/// What answers `text` on `port`; none when the connection closes without a word.
inline std::optional<std::string> answerTo(int port, const std::string& text)
{
    RawPeer peer = RawPeer::connectedTo(port);
    peer.send(frameOf(text));
    return peer.readFrame();
}

/// A service of that name, which the caller owns.
inline std::unique_ptr<Orvu::Service> serviceNamed(const std::string& name)
{
    auto service = std::make_unique<Orvu::Service>();
    service->serviceName = name;
    return service;
}

}  // namespace OrvuTests
