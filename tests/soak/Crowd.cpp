#include "soak/Crowd.h"

#include <atomic>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "push/Clients.h"
#include "support/Observed.h"
#include "support/RawPeer.h"
#include "wire/Visits.h"

namespace OrvuTests {
namespace {

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

template <Got (*listen)(int port, int turn, const std::string& message), int Ports::*port>
void listenTo(Round& round)
{
    for (int turn = 0; !round.isOver(); ++turn) {
        const Got got = listen(round.ports.*port, turn, kPushed);
        if (got != Got::NoConnection) ++round.clients;
        round.judge(got != Got::SomethingElse);
    }
}

Tally play(const Ports& ports)
{
    Round round{ports};
    std::vector<std::thread> peers;
    for (void (*const act)(Round&) :
         {ask, listenTo<listenToTcp, &Ports::tcp>, listenTo<listenToWebSocket, &Ports::webSocket>})
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
