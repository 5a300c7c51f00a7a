/// \file
/// A receiver: it answers requests for its services, its guide and what it can do, asks its user whether a device may
/// pair, and pushes each change of the service that is on. Until Ctrl-C.
///
///     receiver PORT CHANNELS-FILE
///
/// A line of the file is a channel: the network's number, the service's, and the name. The library's own log lines go
/// to standard error; run it with ORVU_LOG=none to turn them off.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "orvu/Typed.h"

namespace {

/// Reads the channels. Empty when the file cannot be read or has none.
std::vector<Orvu::Service> channelsIn(const char* file)
{
    std::vector<Orvu::Service> channels;
    std::ifstream lines(file);
    for (Orvu::Service channel; lines >> channel.originalNetworkId >> channel.serviceId >> std::ws &&
                                std::getline(lines, channel.serviceName);) {
        channel.transportStreamId = channel.originalNetworkId;
        const unsigned network = channel.originalNetworkId, number = channel.serviceId;
        channel.serviceContextId = Orvu::ServiceContext::generateStringId(network, network, number);
        channels.push_back(channel);
    }
    return channels;
}

/// The channels, and which of them is on: an atomic, since handlers run on several threads at once.
class Tuner {
public:
    explicit Tuner(const std::vector<Orvu::Service>& channels) : channels_(channels) {}

    std::unique_ptr<Orvu::ServiceList> list() const
    {
        auto list = std::make_unique<Orvu::ServiceList>();
        for (const Orvu::Service& channel : channels_)
            Orvu::append(list->services, channel);
        return list;
    }

    Orvu::Service current() const { return channels_[current_]; }

    /// False when there is no such channel.
    bool select(const std::string& locator)
    {
        for (std::size_t i = 0; i < channels_.size(); ++i) {
            if (channels_[i].serviceContextId != locator) continue;
            current_ = i;
            return true;
        }
        return false;
    }

private:
    const std::vector<Orvu::Service> channels_;
    std::atomic<std::size_t> current_{0};
};

/// Pushes what changes, over TCP to programs and over a WebSocket to web pages.
struct Pushes {
    Orvu::Publisher programs{"tcp"};
    Orvu::Publisher pages{"websocket"};
};

/// The outcomes of a selection are messages of their own: success, or an error by its name.
Orvu::Answer select(const Orvu::ServiceSelection& wanted, Tuner& tuner, Pushes& pushes)
{
    const auto locator = Orvu::ServiceContext::parse(wanted.serviceContextId);
    if (!locator.valid || locator.allServices) return Orvu::IllegalArgument();
    if (locator.currentService) return Orvu::SuccessResponse();
    if (!tuner.select(wanted.serviceContextId)) return Orvu::ServiceNotFoundError();
    pushes.programs.push(tuner.current());
    pushes.pages.push(tuner.current());
    return Orvu::SuccessResponse();
}

/// What is on, with the descriptors of the event.
std::unique_ptr<Orvu::EventInfoList> guideOf(const Orvu::Service& service)
{
    auto guide = std::make_unique<Orvu::EventInfoList>();
    guide->serviceContextId = service.serviceContextId;
    Orvu::EventInfo& event = Orvu::make(guide->present);
    event.name = "Jornal do " + service.serviceName;
    event.startTime = "2026-11-21T20:30:00-03:00";
    Orvu::make(event.contentDescription).content[0] = 1;
    Orvu::make(event.hyperlink).url = "http://example.org/jornal";
    Orvu::make(event.linkage).serviceId = service.serviceId;
    return guide;
}

std::unique_ptr<Orvu::PlatformCapabilities> capabilities()
{
    auto can = std::make_unique<Orvu::PlatformCapabilities>();
    can->manufacturer = "Orvu";
    can->model = "Example";
    Orvu::make(can->physicalScreenSize, 1920, 1080);
    Orvu::append(can->displayLayers).type = Orvu::DisplayLayerTypeVideo;
    Orvu::append(can->networkInterfaces).type = Orvu::NetworkInterfaceTypeWired;
    return can;
}

/// The pairing dialogue, one question after the other. There is no screen here: after three seconds its user agrees.
class Dialogue {
public:
    using Request = Orvu::Request<Orvu::ConfirmationScreen>;

    ~Dialogue()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        isEnding_ = true;
        changed_.notify_all();
        lock.unlock();
        user_.join();
    }

    void ask(Request question)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        questions_.push_back(std::move(question));
        changed_.notify_all();
    }

private:
    /// Questions that are left at the end are dropped: their peers get "platformUnavailable".
    void answer()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return isEnding_ || !questions_.empty(); });
            if (changed_.wait_for(lock, std::chrono::seconds(3), [this] { return isEnding_; })) return;
            Orvu::ConfirmationScreen screen(questions_.front()->displayName);
            screen.confirmed = screen.success = true;
            questions_.front().answer(screen);
            questions_.pop_front();
        }
    }

    std::mutex mutex_;  // guards all below
    std::condition_variable changed_;
    std::deque<Request> questions_;
    bool isEnding_ = false;
    std::thread user_{[this] { answer(); }};
};

int fail(const std::string& why)
{
    std::cerr << "receiver: " << why << "\n";
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const int port = argc == 3 ? std::atoi(argv[1]) : 0;
    if (port < 1 || port > 65535) {
        std::cerr << "usage: receiver PORT CHANNELS-FILE\n";
        return 64;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before any other thread is started
    const std::vector<Orvu::Service> channels = channelsIn(argv[2]);
    if (channels.empty()) return fail("there are no channels in " + std::string(argv[2]));
    Tuner tuner(channels);
    Pushes pushes;
    if (!pushes.programs || !pushes.pages) return fail(pushes.programs.reason() + pushes.pages.reason());
    Dialogue dialogue;
    Orvu::Receiver receiver;  // the last one, so that it ends first: its handlers use the others
    receiver.on([&](const Orvu::ServiceList&) { return tuner.list(); });
    receiver.on([&](const Orvu::Service&) { return tuner.current(); });
    receiver.on([&](const Orvu::ServiceSelection& wanted) { return select(wanted, tuner, pushes); });
    receiver.on([&](const Orvu::EventInfoList&) { return guideOf(tuner.current()); });
    receiver.on([](const Orvu::PlatformCapabilities&) { return capabilities(); });
    receiver.on([&](Dialogue::Request question) { dialogue.ask(std::move(question)); });
    if (!receiver.listen(port)) return fail(receiver.reason());
    std::cout << "pushing on ports " << pushes.programs.port() << " (tcp) and " << pushes.pages.port()
              << " (websocket)\n"
              << "listening on port " << receiver.port() << std::endl;
    int signal = 0;
    sigwait(&signals, &signal);
    receiver.stop();
    std::cout << "ended" << std::endl;
}
