#include <array>
#include <memory>
#include <optional>
#include <string>
#include <sys/random.h>
#include <utility>

#include "Commands.h"
#include "Connection.h"
#include "Ending.h"
#include "ExitCode.h"
#include "JsonLines.h"
#include "Output.h"
#include "WebSocketClient.h"

namespace OrvuTool {
namespace {

using Came = Connection::Came;

constexpr std::chrono::seconds kHandshakeTime(5);
constexpr std::size_t kLongestAnswer = 16384;  // bytes

struct WatchOptions {
    std::string host;
    int port = 0;
    bool webSocket = false;
    bool raw = false;

    std::string publisher() const { return host + ":" + std::to_string(port); }
};

template <std::size_t Size>
std::array<unsigned char, Size> randomBytes()
{
    std::array<unsigned char, Size> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) < 0) bytes.fill(0);  // good enough: nothing secret depends on it
    return bytes;
}

/// Watches one publisher until it ends, a signal comes, or whoever reads the output leaves.
class Watch {
public:
    Watch(const WatchOptions& options, Connection& connection, Ending& ending, Output& output)
        : options_(options), connection_(connection), ending_(ending), output_(output)
    {}

    /// Returns the exit code.
    int run();

private:
    using ExitCodeAtEnd = std::optional<int>;

    ExitCodeAtEnd shakeHands();
    ExitCodeAtEnd readAnswer(const std::string& key);
    ExitCodeAtEnd watchOn();
    ExitCodeAtEnd show(std::string_view bytes);
    ExitCodeAtEnd showMessages(std::string_view bytes);
    void addPayload(std::string_view payload);
    ExitCodeAtEnd writeShown(ExitCodeAtEnd end);
    int leave();
    int refused(const std::string& fault) const;

    const WatchOptions& options_;
    Connection& connection_;
    Ending& ending_;
    Output& output_;
    FrameReader frames_;
    JsonLines lines_;
    std::string shown_;  // not written yet
};

int Watch::run()
{
    ExitCodeAtEnd end = options_.webSocket ? shakeHands() : std::nullopt;
    while (!end)
        end = watchOn();
    if (!options_.raw) lines_.finish(shown_);
    output_.write(shown_, ending_);
    return *end;
}

int Watch::refused(const std::string& fault) const
{
    complain(options_.publisher() + " cannot be watched: " + fault);
    return ExitNoServer;
}

Watch::ExitCodeAtEnd Watch::shakeHands()
{
    const std::string key = webSocketKey(randomBytes<16>());
    connection_.send(openingRequest(options_.host, options_.port, key), Clock::now() + kHandshakeTime);
    return readAnswer(key);  // also when not all went out: the answer, or that there is none, says why
}

Watch::ExitCodeAtEnd Watch::readAnswer(const std::string& key)
{
    const Clock::time_point until = Clock::now() + kHandshakeTime;
    std::string answer;
    std::string bytes;
    std::size_t blankLine;
    while ((blankLine = answer.find("\r\n\r\n")) == std::string::npos) {
        const Came came = connection_.receive(bytes, output_.descriptor(), until);
        if (came == Came::Stop) return ExitOk;
        if (came == Came::End) return refused("it closes the connection, perhaps since somebody else watches");
        if (came != Came::Bytes || answer.size() > kLongestAnswer) return refused("it does not answer as a WebSocket");
        answer += bytes;
    }
    const std::string fault = faultOfAnswer(answer.substr(0, blankLine), key);
    return fault.empty() ? show(std::string_view(answer).substr(blankLine + 4)) : refused(fault);
}

Watch::ExitCodeAtEnd Watch::watchOn()
{
    std::string bytes;
    switch (connection_.receive(bytes, output_.descriptor())) {
        case Came::Bytes:
            return show(bytes);
        case Came::Stop:
            return leave();
        case Came::End:
            return ExitOk;
        default:
            return refused(connection_.fault());
    }
}

/// Says good-bye where the protocol has a word for it.
int Watch::leave()
{
    if (options_.webSocket) connection_.sendAtOnce(closeFrame(randomBytes<4>()));
    return ExitOk;
}

Watch::ExitCodeAtEnd Watch::show(std::string_view bytes)
{
    if (options_.webSocket) return writeShown(showMessages(bytes));
    addPayload(bytes);
    return writeShown(std::nullopt);
}

Watch::ExitCodeAtEnd Watch::showMessages(std::string_view bytes)
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
                return leave();
            default:
                return refused("it sends what is no frame of a WebSocket");
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
Watch::ExitCodeAtEnd Watch::writeShown(ExitCodeAtEnd end)
{
    const std::string text = std::exchange(shown_, "");
    if (output_.write(text, ending_) || end) return end;
    return leave();
}

int watch(const WatchOptions& options, Output& output)
{
    const std::optional<sockaddr_in> server = addressOf(options.host, options.port);
    Ending ending;
    Connection connection(ending);
    if (server && connection.connectTo(*server)) return Watch(options, connection, ending, output).run();
    if (ending.hasCome()) return ExitOk;
    complain("cannot connect to " + options.publisher());
    return ExitNoServer;
}

}  // namespace

void addWatch(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<WatchOptions>();
    CLI::App* command = app.add_subcommand("watch", "Show what a publisher pushes, until it ends or Ctrl-C");
    command->add_option("HOST", options->host, "The publisher's name or IPv4 address")->required()->type_name("");
    command->add_option("PORT", options->port, "Its TCP port")->required()->type_name("")->check(isPort());
    command->add_flag("--websocket", options->webSocket, "The publisher is one for WebSockets");
    command->add_flag("--raw", options->raw, "Print the bytes as they come, nothing added and nothing left out");
    addLogOption(*command, chosen);
    command->footer(
        "Each JSON value that is pushed is one line, compact; what is no JSON is shown as it comes. Values above 64 "
        "MiB\n"
        "are, too.\n"
        "Exit codes:\n"
        "  0   the publisher ended, or Ctrl-C, SIGTERM or SIGHUP came\n"
        "  3   the publisher cannot be reached or refuses to be watched, or the connection broke\n"
        "  64  wrong arguments\n"
        "  74  standard output cannot be written");
    command->callback(
        [options, &chosen] { chosen.run = [options](Output& output) { return watch(*options, output); }; });
}

}  // namespace OrvuTool
