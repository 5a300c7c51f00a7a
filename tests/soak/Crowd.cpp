#include "soak/Crowd.h"

#include <atomic>
#include <optional>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "push/Observed.h"
#include "push/Peers.h"
#include "support/RawPeer.h"
#include "wire/Visits.h"

namespace OrvuTests {
namespace {

const std::string kEcho = "hello";

const std::string kAnswers[] = {
    frameOf(R"({"HEADER":"serviceList","serviceList":[{"serviceName":"Canal Um"},{"serviceName":"Canal Dois"}]})"),
    frameOf(R"({"HEADER":"success"})"),
    frameOf(R"({"HEADER":"serviceTime"})"),
    frameOf("no JSON"),
    lengthBytes(100) + "{",
    lengthBytes(0xFFFFFFFF) + "{",
    lengthBytes(0),
    "",
};

[[noreturn]] void answer(RawListener& listener)
{
    for (std::size_t turn = 0;; ++turn) {
        RawPeer peer = listener.accept();
        peer.readFrame();
        peer.send(kAnswers[turn % std::size(kAnswers)]);
        if (turn % 3 == 0) peer.vanish();
    }
}

struct Round {
    Ports ports;
    Clock::time_point end = Clock::now() + kRound;
    std::atomic<long> exchanges{0};
    std::atomic<long> clients{0};
    std::atomic<long> wrong{0};

    bool isOver() const { return Clock::now() >= end; }
    void judge(bool right) { wrong += right ? 0 : 1; }
};

void ask(Round& round)
{
    for (int turn = 0; !round.isOver(); ++turn) {
        round.judge(visit(round.ports.requests, turn));
        ++round.exchanges;
    }
}

/// None while nobody listens: push servers come and go.
std::optional<RawPeer> connected(int port, Round& round)
{
    try {
        std::optional<RawPeer> peer = RawPeer::connectedTo(port);
        ++round.clients;
        return peer;
    } catch (const std::runtime_error&) {
        std::this_thread::yield();
        return std::nullopt;
    }
}

bool isRepeated(const std::string& message, const std::string& bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (bytes[i] != message[i % message.size()]) return false;
    return true;
}

void listenToTcp(Round& round)
{
    for (int turn = 0; !round.isOver(); ++turn) {
        std::optional<RawPeer> peer = connected(round.ports.tcp, round);
        if (!peer) continue;
        if (turn % 4 == 0) peer->send("what nobody reads");
        if (turn % 4 == 1) peer->vanish();
        if (turn % 4 == 2) round.judge(isRepeated(kPushed, peer->receive(1000)));
        if (turn % 4 == 3) round.judge(isRepeated(kPushed, peer->readToEnd()));
    }
}

/// Takes frames until the echo comes, or the end.
bool getsNothingElse(RawPeer& peer)
{
    peer.send(textFrame(kEcho));
    while (const std::optional<Frame> frame = readServerFrame(peer)) {
        if (*frame == Frame{0x81, kEcho}) break;
        if (!(*frame == Frame{0x82, kPushed})) return false;
    }
    return true;
}

void listenToWebSocket(Round& round)
{
    for (int turn = 0; !round.isOver(); ++turn) {
        std::optional<RawPeer> peer = connected(round.ports.webSocket, round);
        if (!peer) continue;
        if (turn % 5 == 0) peer->readToEnd();
        if (turn % 5 == 1) peer->send("no opening request\r\n\r\n");
        if (turn % 5 == 2 && peer->send(openingRequest())) peer->vanish();
        if (turn % 5 < 3 || !shakesHands(*peer)) continue;
        round.judge(getsNothingElse(*peer));
        if (turn % 5 == 3 && peer->send(kCloseFrame)) peer->readToEnd();
    }
}

Tally play(const Ports& ports)
{
    Round round{ports};
    std::vector<std::thread> peers;
    for (void (*const act)(Round&) : {ask, listenToTcp, listenToWebSocket})
        for (int i = 0; i < 2; ++i)
            peers.emplace_back(act, std::ref(round));
    for (std::thread& peer : peers)
        peer.join();
    return {round.exchanges, round.clients, round.wrong};
}

template <class Value>
bool isTold(int line, Value& value)
{
    return recv(line, &value, sizeof value, MSG_WAITALL) == sizeof value;
}

template <class Value>
void tell(int line, const Value& value)
{
    if (send(line, &value, sizeof value, MSG_NOSIGNAL) != sizeof value) throw std::runtime_error("the other is gone");
}

/// The other process, until this one closes the line.
[[noreturn]] void live(int line)
{
    RawListener listener;
    std::thread(answer, std::ref(listener)).detach();
    tell(line, listener.port());
    for (Ports ports; isTold(line, ports);)
        tell(line, play(ports));
    _exit(0);
}

}  // namespace

Crowd::Crowd()
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::runtime_error("no line");
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("no process");
    line_ = ends[0];
    close(process_ == 0 ? ends[0] : ends[1]);
    if (process_ == 0) live(ends[1]);
    if (!isTold(line_, port_)) throw std::runtime_error("the peers do not come");
}

Crowd::~Crowd()
{
    close(line_);
    waitpid(process_, nullptr, 0);
}

void Crowd::begin(const Ports& ports) const
{
    tell(line_, ports);
}

Tally Crowd::end() const
{
    Tally tally;
    if (!isTold(line_, tally)) throw std::runtime_error("a peer waited in vain");
    return tally;
}

}  // namespace OrvuTests
