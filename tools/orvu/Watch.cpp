#include "Watch.h"

#include <utility>

#include "Ending.h"
#include "LocalTime.h"
#include "Output.h"
#include "RandomBytes.h"

namespace OrvuTool {
namespace {

using Came = Connection::Came;
using WatchKind = WatchEnd::Kind;

constexpr std::chrono::seconds kHandshakeTime(5);
constexpr std::chrono::seconds kSilence(5);
constexpr std::size_t kLongestAnswer = 16384;  // bytes

constexpr char kOtherPorts[] = "a WebSocket port (try --websocket) or a port for requests (try orvu ask)";

}  // namespace

Watch::Watch(const WatchOptions& options, Ending& ending, Output& output)
    : options_(options),
      ending_(ending),
      output_(output),
      connection_(ending),
      check_(options.time ? localTime().size() + 1 : 0)
{}

WatchEnd Watch::run(const std::optional<sockaddr_in>& server)
{
    const WatchEnd end = connectAndWatch(server);
    if (!options_.raw) lines_.finish(shown_);
    if (!output_.write(shown_, ending_)) return {WatchKind::Stopped, ""};
    return end;
}

WatchEnd Watch::connectAndWatch(const std::optional<sockaddr_in>& server)
{
    if (!server || !connection_.connectTo(*server)) {
        if (ending_.hasCome()) return {WatchKind::Stopped, ""};
        const std::string fault = server ? connection_.fault() : faultOfHost(options_.host);
        return {WatchKind::Failed, "cannot connect to " + options_.publisher() + ": " + fault};
    }
    if (!options_.webSocket) sayThatItWatches();
    End end = options_.webSocket ? shakeHands() : std::nullopt;
    while (!end)
        end = watchOn();
    return *end;
}

WatchEnd Watch::refused(const std::string& fault) const
{
    return {WatchKind::Failed, options_.publisher() + " cannot be watched: " + fault};
}

Watch::End Watch::shakeHands()
{
    const std::string key = webSocketKey(randomBytes<16>());
    connection_.send(openingRequest(options_.host, options_.port, key), Clock::now() + kHandshakeTime);
    return readAnswer(key);  // also when not all went out: the answer, or that there is none, says why
}

Watch::End Watch::readAnswer(const std::string& key)
{
    const Clock::time_point until = Clock::now() + kHandshakeTime;
    std::string answer;
    std::string bytes;
    std::size_t blankLine;
    while ((blankLine = answer.find("\r\n\r\n")) == std::string::npos) {
        const Came came = connection_.receive(bytes, output_.descriptor(), until);
        if (came == Came::Stop) return WatchEnd{WatchKind::Stopped, ""};
        if (came == Came::End)
            return refused("it closes the connection; perhaps somebody else watches, or it is not a WebSocket port");
        if (came != Came::Bytes || answer.size() > kLongestAnswer) return refused("it does not answer as a WebSocket");
        answer += bytes;
    }
    const std::string fault = faultOfAnswer(answer.substr(0, blankLine), key);
    if (!fault.empty()) return refused(fault);
    sayThatItWatches();
    return show(std::string_view(answer).substr(blankLine + 4));
}

void Watch::sayThatItWatches()
{
    isAttached_ = true;
    guessAt_ = Clock::now() + kSilence;
    note("watching " + options_.publisher() + ", until Ctrl-C");
}

Watch::End Watch::watchOn()
{
    std::string bytes;
    switch (connection_.receive(bytes, output_.descriptor(), hasCome_ ? kNever : guessAt_)) {
        case Came::Bytes:
            return show(bytes);
        case Came::Stop:
            return leave();
        case Came::End:
            return closed();
        case Came::TimeOver:
            guessWhyNothingComes();
            return std::nullopt;
        default:
            return refused(connection_.fault());
    }
}

void Watch::guessWhyNothingComes()
{
    guessAt_ = kNever;
    const std::string guess = "nothing came for 5 s: perhaps nothing is pushed yet";
    note(options_.webSocket ? guess : guess + ", or this is " + kOtherPorts);
}

WatchEnd Watch::closed() const
{
    const std::string what = options_.publisher() + " closed the connection";
    if (hasCome_) return {WatchKind::Closed, what};
    if (guessAt_ == kNever) return {WatchKind::Closed, what + " and sent nothing"};  // it was guessed why
    return {WatchKind::Closed,
            what + " and sent nothing" + (options_.webSocket ? "" : std::string("; perhaps it is ") + kOtherPorts)};
}

/// Says good-bye where the protocol has a word for it.
WatchEnd Watch::leave()
{
    if (options_.webSocket) connection_.sendAtOnce(closeFrame(randomBytes<4>()));
    return {WatchKind::Stopped, ""};
}

Watch::End Watch::show(std::string_view bytes)
{
    if (!bytes.empty()) hasCome_ = true;
    if (options_.time) lines_.startLinesWith(localTime() + " ");
    if (options_.webSocket) return writeShown(showMessages(bytes));
    addPayload(bytes);
    return writeShown(std::nullopt);
}

Watch::End Watch::showMessages(std::string_view bytes)
{
    while (true) {
        const FrameReader::Part part = frames_.next(bytes);
        switch (part.kind) {
            case FrameReader::Kind::Nothing:
                return std::nullopt;
            case FrameReader::Kind::Payload:
                addPayload(part.payload);
                break;
            case FrameReader::Kind::MessageEnd:
                if (!options_.raw) lines_.finish(shown_);
                break;
            case FrameReader::Kind::Close:
                leave();
                return closed();
            default:
                return refused("it sends something that is not a WebSocket frame");
        }
    }
}

void Watch::addPayload(std::string_view payload)
{
    if (options_.raw)
        shown_ += payload;
    else
        lines_.add(payload, shown_);
}

/// `end`, or that of a command whose output is not taken.
Watch::End Watch::writeShown(End end)
{
    const std::string text = std::exchange(shown_, "");
    if (!output_.write(text, ending_) && !end) return leave();
    if (options_.check) {
        for (const std::string& found : check_.add(text))
            complain(found);
    }
    return end;
}

}  // namespace OrvuTool
