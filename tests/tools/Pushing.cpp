#include "tools/Pushing.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "codecs/Base64.h"
#include "codecs/Sha1.h"

namespace OrvuTests {
namespace {

std::vector<std::string> pushing(const std::string& protocol, int port, const std::string& input,
                                 const std::vector<std::string>& options)
{
    std::string arguments = "push " + protocol + " --ports " + rangeOf(port);
    for (const std::string& option : options)
        arguments += " '" + option + "'";
    return {"/bin/sh", "-c", "exec " + orvuInShell(arguments + " <'" + input + "'")};
}

/// Calls `isTrue` until it is; false after 30 s.
template <class Predicate>
bool eventually(Predicate isTrue)
{
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isTrue()) {
        if (std::chrono::steady_clock::now() > bound) return false;
        std::this_thread::yield();
    }
    return true;
}

void require(bool isTrue, const char* what)
{
    if (!isTrue) throw std::runtime_error(what);
}

std::string sha1(const std::string& text)
{
    unsigned char digest[Orvu::Sha1::kDigestSize];
    Orvu::Sha1::SHA1Context context;
    Orvu::Sha1::SHA1Reset(&context);
    Orvu::Sha1::SHA1Input(&context, reinterpret_cast<const unsigned char*>(text.data()),
                          static_cast<unsigned>(text.size()));
    Orvu::Sha1::SHA1Result(&context, digest);
    return Orvu::Base64::encode(digest, sizeof digest);
}

}  // namespace

std::string rangeOf(int port)
{
    return std::to_string(port) + "-" + std::to_string(port);
}

std::string repeated(const std::string& text, std::size_t size)
{
    std::string all;
    while (all.size() < size)
        all += text;
    return all;
}

Pipe::Pipe() : path_(folder_.file("pipe"))
{
    require(mkfifo(path_.c_str(), 0600) == 0, "no pipe");
    fd_ = open(path_.c_str(), O_RDWR | O_CLOEXEC);
    require(fd_ >= 0, "the pipe cannot be opened");
}

Pipe::~Pipe()
{
    close();
}

void Pipe::write(const std::string& bytes)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t size = ::write(fd_, bytes.data() + done, bytes.size() - done);
        require(size > 0, "nothing can be written");
        done += static_cast<std::size_t>(size);
    }
}

bool Pipe::waitUntilFull()
{
    return eventually([this] {
        pollfd room{fd_, POLLOUT, 0};
        return poll(&room, 1, 0) == 0;
    });
}

void Pipe::close()
{
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

Publisher::Publisher(const std::string& protocol, const std::vector<std::string>& options)
    : protocol_(protocol), process_(pushing(protocol, port_.port(), input_.path(), options))
{
    require(process_.waitForOutput("handle"), "orvu push does not come up");
}

std::string Publisher::push(const std::string& line)
{
    const std::string before = process_.out();
    say(line + "\n");
    require(process_.waitForOutput(before + std::to_string(line.size()) + " bytes"), "a line is not pushed");
    return process_.out().substr(before.size());
}

void Publisher::waitForClient()
{
    require(eventually([this] { return push("[]") == "2 bytes pushed\n"; }), "no client comes");
}

void Publisher::waitForNoClient()
{
    require(eventually([this] { return push("[]") == "2 bytes: no client took it\n"; }), "the client stays");
}

void Publisher::waitFor(Process& watcher)
{
    const auto shows = [&] { return push("[]"), watcher.out().find("[]") != std::string::npos; };
    require(eventually(shows), "the watcher shows nothing");
}

Ended Publisher::endInput()
{
    input_.close();
    return process_.wait();
}

Ended Publisher::interrupt()
{
    process_.signal(SIGINT);
    return process_.wait();
}

std::vector<std::string> watching(int port, const std::string& protocol, const std::vector<std::string>& options)
{
    std::vector<std::string> arguments = {"watch", "127.0.0.1", std::to_string(port)};
    if (protocol == "websocket") arguments.emplace_back("--websocket");
    arguments.insert(arguments.end(), options.begin(), options.end());
    return orvu(arguments);
}

std::string watchingLine(int port)
{
    return "orvu: watching 127.0.0.1:" + std::to_string(port) + ", until Ctrl-C\n";
}

std::string closedLine(int port)
{
    return "orvu: 127.0.0.1:" + std::to_string(port) + " closed the connection\n";
}

std::string shownAfterwards(const std::string& out)
{
    std::size_t at = 0;
    while (out.compare(at, 3, "[]\n") == 0)
        at += 3;
    return out.substr(at);
}

RawPeer attachedTo(int port)
{
    const std::string answer =
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n";
    RawPeer client = RawPeer::connectedTo(port);
    client.send("GET / HTTP/1.1\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    require(client.receive(answer.size()) == answer, "the server shakes no hands");
    return client;
}

std::string openingRequestFrom(RawPeer& client)
{
    std::string request;
    while (request.find("\r\n\r\n") == std::string::npos) {
        const std::string byte = client.receive(1);
        require(!byte.empty(), "the client asks for nothing");
        request += byte;
    }
    return request;
}

std::string answerTo(const std::string& openingRequest)
{
    const std::string field = "\r\nSec-WebSocket-Key: ";
    const std::string key = openingRequest.substr(openingRequest.find(field) + field.size(), 24);
    return "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: " +
           sha1(key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11") + "\r\n\r\n";
}

RawPeer attachedFrom(RawListener& server)
{
    RawPeer client = server.accept();
    client.send(answerTo(openingRequestFrom(client)));
    return client;
}

}  // namespace OrvuTests
