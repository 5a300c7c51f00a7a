#include "push/Clients.h"

#include <optional>
#include <stdexcept>

#include "push/Peers.h"

namespace OrvuTests {
namespace {

const std::string kEcho = "hello";

std::optional<RawPeer> connected(int port)
{
    try {
        return RawPeer::connectedTo(port);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

Got judged(bool right)
{
    return right ? Got::WhatWasDue : Got::SomethingElse;
}

bool isRepeated(const std::string& message, const std::string& bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != message[i % message.size()]) return false;
    return true;
}

/// Takes frames until the echo comes, or the end; false when there is another one among them.
bool waitForEcho(RawPeer& peer, const std::string& message)
{
    peer.send(textFrame(kEcho));
    while (const std::optional<Frame> frame = readServerFrame(peer)) {
        if (*frame == Frame{0x81, kEcho}) break;
        if (!(*frame == Frame{0x82, message})) return false;
    }
    return true;
}

}  // namespace

Got listenToTcp(int port, int turn, const std::string& message)
{
    std::optional<RawPeer> peer = connected(port);
    if (!peer) return Got::NoConnection;
    switch (turn % 4) {
        case 0:
            peer->send("what nobody reads");
            return Got::WhatWasDue;
        case 1:
            peer->vanish();
            return Got::WhatWasDue;
        case 2:
            return judged(isRepeated(message, peer->receive(20 * message.size())));
        default:
            return judged(isRepeated(message, peer->readToEnd()));
    }
}

Got listenToWebSocket(int port, int turn, const std::string& message)
{
    std::optional<RawPeer> peer = connected(port);
    if (!peer) return Got::NoConnection;
    const int kind = turn % 5;
    if (kind == 0 && peer->send(openingRequest().substr(0, 20))) peer->finishSending();
    if (kind == 1) peer->send("no opening request\r\n\r\n");
    if (kind < 2) return judged(peer->readToEnd().empty());
    if (kind == 2 && peer->send(openingRequest())) peer->vanish();
    if (kind == 2 || !shakesHands(*peer)) return Got::WhatWasDue;
    const bool right = waitForEcho(*peer, message);
    if (kind == 3 && peer->send(kCloseFrame)) peer->readToEnd();
    return judged(right);
}

}  // namespace OrvuTests
