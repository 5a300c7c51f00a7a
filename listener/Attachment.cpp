#include "listener/Attachment.h"

#include <cerrno>
#include <cstring>

#include "listener/RandomBytes.h"
#include "log/Log.h"

namespace Orvu {
namespace {

constexpr Seconds kHandshakeTime{5};
constexpr std::size_t kLongestAnswer = 16384;  // bytes

std::string faultOfConnecting(int error)
{
    if (error == ECONNREFUSED) return "refused, nobody listens there";
    if (error == ETIMEDOUT) return "no answer within 5 s";
    return std::strerror(error);
}

Loss refused(const std::string& why, int error)
{
    return {ListenerLossRefused, error, why};
}

Loss ended()
{
    return {ListenerLossEnded, 0, "it closed the connection"};
}

Loss broken(int error)
{
    return {ListenerLossBroke, error, std::strerror(error)};
}

/// Of a connection that ended, with an error number or with 0, or that is silent.
Loss faultOfHandshake(int error, bool wasAttachedBefore)
{
    if (error != 0 && error != ECONNRESET) return refused("it does not answer as a WebSocket", error);
    if (wasAttachedBefore) return {ListenerLossOccupied, error, "it has another client"};
    return {ListenerLossUnanswered, error,
            "it closes the connection: it has another client, or is not a WebSocket port"};
}

}  // namespace

Loss lossOfMemory()
{
    return {ListenerLossBroke, ENOMEM, "out of memory"};  // short enough to need none
}

Attachment::Attachment(const PublisherPlace& place, Delivery& delivery, const Socket& bell,
                       const std::atomic<bool>& isOver, char* room)
    : place_(place), delivery_(delivery), isOver_(isOver), room_(room), connection_(bell), splitter_(delivery)
{}

Loss Attachment::run(in_addr host, bool wasAttachedBefore)
{
    const int fault = connection_.connectTo(host, place_.port);
    if (fault != 0) return {ListenerLossNotConnected, fault, faultOfConnecting(fault)};
    if (place_.channel == ChannelTcp)
        attach();
    else if (End end = openWebSocket(wasAttachedBefore))
        return *end;
    return receive();
}

void Attachment::attach()
{
    isAttached_ = true;
    logLine("PushListener::listen: attached to %s:%d", place_.host.c_str(), place_.port);
    ListenerStatus status;
    status.state = ListenerStateAttached;
    delivery_.status(status);
}

Attachment::End Attachment::openWebSocket(bool wasAttachedBefore)
{
    const std::string key = webSocketKey(randomBytes<16>());
    const int fault = connection_.send(openingRequest(place_.host, place_.port, key));
    // A publisher that has closed the connection may have said why.
    if (fault != 0 && fault != EPIPE && fault != ECONNRESET) return broken(fault);
    return readAnswer(key, wasAttachedBefore);
}

Attachment::End Attachment::readAnswer(const std::string& key, bool wasAttachedBefore)
{
    const Deadline until = after(kHandshakeTime);
    std::string answer;
    std::size_t blankLine;
    while ((blankLine = answer.find("\r\n\r\n")) == std::string::npos) {
        if (answer.size() > kLongestAnswer) return refused("it does not answer as a WebSocket", EPROTO);
        const ssize_t got = connection_.receive(room_, kRoom, until);
        if (got <= 0) return faultOfHandshake(got == 0 ? 0 : errno, wasAttachedBefore);
        answer.append(room_, static_cast<std::size_t>(got));
    }
    const std::string fault = faultOfAnswer(answer.substr(0, blankLine), key);
    if (!fault.empty()) return refused(fault, EPROTO);
    attach();
    const std::size_t early = answer.size() - blankLine - 4;  // all of them came with the last bytes of the answer
    std::memmove(room_, answer.data() + answer.size() - early, early);
    return handle(early);
}

Loss Attachment::receive()
{
    while (!isOver_) {
        delivery_.endTurn();
        const ssize_t got = connection_.receive(room_, kRoom);
        if (got > 0) {
            if (End end = handle(static_cast<std::size_t>(got))) return *end;
            continue;
        }
        if (got < 0 && errno == ECANCELED) break;
        return got == 0 ? ended() : broken(errno);
    }
    return detach();
}

/// Says good-bye where the protocol has a word for it.
Loss Attachment::detach()
{
    delivery_.endTurn();
    if (place_.channel == ChannelWebSocket) connection_.finish(closeFrame(randomBytes<4>()));
    return ended();
}

Attachment::End Attachment::answerPing()
{
    const int fault = connection_.send(pongFrame(frames_.ping(), randomBytes<4>()));
    if (fault == 0 || fault == ECANCELED) return std::nullopt;
    return broken(fault);
}

Attachment::End Attachment::handle(std::size_t size)
{
    if (place_.channel == ChannelWebSocket) return takeFrames({room_, size});
    takePayload({room_, size});
    return std::nullopt;
}

Attachment::End Attachment::takeFrames(std::string_view bytes)
{
    using Kind = ServerFrames::Kind;
    while (true) {
        const ServerFrames::Part part = frames_.next(bytes);
        switch (part.kind) {
            case Kind::Nothing:
                return std::nullopt;
            case Kind::Payload:
                takePayload(part.payload);
                break;
            case Kind::MessageEnd:
                endMessage();
                break;
            case Kind::Ping:
                if (End end = answerPing()) return end;
                break;
            case Kind::Close:
                return detach();
            default:
                return Loss{ListenerLossBroke, EPROTO, "it sends something that is not a WebSocket frame"};
        }
    }
}

/// `payload` is in `room_`, which has one more byte.
void Attachment::takePayload(std::string_view payload)
{
    if (payload.empty()) return;
    char* const bytes = room_ + (payload.data() - room_);
    if (delivery_.givesBytes())
        delivery_.bytes(bytes, payload.size());
    else
        splitter_.add(bytes, payload.size());
}

void Attachment::endMessage()
{
    if (!delivery_.givesBytes()) splitter_.finish();
}

void Attachment::handOverRest()
{
    delivery_.beginRest();
    endMessage();
    delivery_.endTurn();
}

}  // namespace Orvu
