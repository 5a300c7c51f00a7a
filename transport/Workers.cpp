#include "transport/Workers.h"

#include <algorithm>
#include <new>
#include <optional>
#include <pthread.h>
#include <sys/socket.h>

#include "log/Log.h"
#include "transport/RequestCallback.h"
#include "transport/RequestReceiver.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

constexpr std::size_t kMostIdle = 8;
constexpr timeval kIdleTime{10, 0};
constexpr char kName[] = "orvu-worker";

/// As a peer does that only asked whether somebody listens.
bool hasLeftInSilence(int fd)
{
    char byte;
    return recv(fd, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

}  // namespace

/// What one thread serves with. It is deleted when the thread ends, however it does: a callback may end it without
/// unwinding its stack, so nothing that matters may be held there meanwhile.
class Workers::Worker {
public:
    Worker(std::shared_ptr<Workers> workers, ConnectionInFlight connection)
        : workers_(std::move(workers)), connection_(std::move(connection))
    {}

    /// The calling thread's; null when it has none.
    static Worker* current() { return key() ? static_cast<Worker*>(pthread_getspecific(*key())) : nullptr; }

    static void* run(void* worker);
    bool isInCallback() const { return isInCallback_; }

private:
    friend class Workers;

    static void end(void* worker);
    static const std::optional<pthread_key_t>& key();

    void serve();
    void handOver(std::unique_ptr<OrvuRestRequest> request, int number);
    void endCallback();

    const std::shared_ptr<Workers> workers_;
    ConnectionInFlight connection_;
    bool isInCallback_ = false;
    sigset_t signals_{};  // during the callback

    // While it idles, under the mutex of the workers:
    pthread_t thread_{};
    bool isJoined_ = false;
};

/// Under it a thread keeps its Worker; none when the system has no keys left.
const std::optional<pthread_key_t>& Workers::Worker::key()
{
    static const std::optional<pthread_key_t> kKey = [] {
        pthread_key_t key;
        return pthread_key_create(&key, end) == 0 ? std::optional(key) : std::nullopt;
    }();
    return kKey;
}

void* Workers::Worker::run(void* argument)
{
    auto* const worker = static_cast<Worker*>(argument);
    becomeLibraryThread(kName);
    const bool isKept = key() && pthread_setspecific(*key(), worker) == 0;
    do {
        worker->serve();
    } while (isKept && worker->workers_->idle(*worker));
    if (!isKept) end(worker);
    return nullptr;
}

/// The thread's end, also out of a callback.
void Workers::Worker::end(void* argument)
{
    const std::unique_ptr<Worker> worker(static_cast<Worker*>(argument));
    if (worker->isInCallback_) worker->endCallback();
    if (!worker->isJoined_) pthread_detach(pthread_self());
}

void Workers::Worker::serve()
{
    const int number = connection_.fd();
    logLine("OrvuRestServerSocket::workerThread: clientSockfd: %d", number);
    if (std::unique_ptr<OrvuRestRequest> request = receiveRequest(connection_)) handOver(std::move(request), number);
    connection_ = ConnectionInFlight();
    logLine("OrvuRestServerSocket::workerThread -- end (%d)", number);
}

void Workers::Worker::handOver(std::unique_ptr<OrvuRestRequest> request, int number)
{
    const RequestCallback callback = registeredCallback();
    logNotification();
    const auto begin = [this] {
        RunningCallbacks::begin();
        isInCallback_ = true;
    };
    if (!connection_.inFlight()->ifOpen(begin)) return logDropped(number);
    OrvuRestRequest* const handedOver = request.release();
    {
        workers_->getSignals(signals_);
        const ApplicationsTurn turn(signals_, kName);
        if (!notify(callback, handedOver)) delete handedOver;
    }
    endCallback();
}

void Workers::Worker::endCallback()
{
    isInCallback_ = false;
    RunningCallbacks::end();
}

Workers::Workers(std::shared_ptr<InFlight> inFlight) : inFlight_(std::move(inFlight))
{
    idle_.reserve(kMostIdle);
}

void Workers::open(const Socket& listener, const sigset_t& signals)
{
    setsockopt(listener.fd(), SOL_SOCKET, SO_RCVTIMEO, &kIdleTime, sizeof kIdleTime);
    const std::lock_guard<std::mutex> lock(mutex_);
    listener_ = &listener;
    signals_ = signals;
    isOpen_ = true;
}

void Workers::getSignals(sigset_t& signals)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    signals = signals_;
}

/// Without a socket when the server is being destroyed. Throws std::bad_alloc.
ConnectionInFlight Workers::connectionOf(Socket accepted)
{
    return {std::move(accepted), inFlight_, inFlight_->wakes()};
}

bool Workers::serve(Socket accepted)
{
    ConnectionInFlight connection = connectionOf(std::move(accepted));
    if (!connection) return true;
    auto worker = std::make_unique<Worker>(shared_from_this(), std::move(connection));
    if (hasLeftInSilence(worker->connection_.fd())) {
        worker->serve();
        return true;
    }
    pthread_t thread;
    if (createThread(thread, Worker::run, worker.get()) != 0) return false;
    static_cast<void>(worker.release());  // the thread's
    return true;
}

/// Accepts the next connection. False when the thread is to end instead: after ten seconds without one, once closed,
/// and when accepting failed, which is then the accept thread's to deal with.
bool Workers::idle(Worker& worker)
{
    const Socket* const listener = beginIdling(worker);
    if (!listener) return false;
    Socket accepted = Socket::acceptedFrom(*listener);
    endIdling(worker);
    if (!accepted) return false;
    logLine(kAcceptedLine, accepted.fd());
    try {
        if (!worker.isJoined_) {
            worker.connection_ = connectionOf(std::move(accepted));
            return static_cast<bool>(worker.connection_);
        }
        if (serve(std::move(accepted))) return false;  // close() waits for this thread, not for a callback
    } catch (const std::bad_alloc&) {
        // out of memory: there is no worker
    }
    logLine("OrvuRestServerSocket::serverThread: ERROR Fail to start worker thread!");
    return false;
}

/// The socket to accept on; null when the worker is not to idle.
const Socket* Workers::beginIdling(Worker& worker)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!isOpen_ || idle_.size() == kMostIdle) return nullptr;
    worker.thread_ = pthread_self();
    idle_.push_back(&worker);
    return listener_;
}

void Workers::endIdling(Worker& worker)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    idle_.erase(std::remove(idle_.begin(), idle_.end(), &worker), idle_.end());
    if (idle_.empty()) fewerIdle_.notify_all();
}

void Workers::waitUntilNoneIdles()
{
    std::unique_lock<std::mutex> lock(mutex_);
    fewerIdle_.wait(lock, [this] { return idle_.empty() || !isOpen_; });
}

void Workers::close()
{
    pthread_t ending[kMostIdle];
    std::size_t count = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        isOpen_ = false;
        for (Worker* const worker : idle_) {
            worker->isJoined_ = true;
            ending[count++] = worker->thread_;
        }
        fewerIdle_.notify_all();
    }
    for (std::size_t i = 0; i < count; ++i)
        pthread_join(ending[i], nullptr);
}

bool Workers::isInCallback()
{
    const Worker* const worker = Worker::current();
    return worker && worker->isInCallback();
}

}  // namespace Orvu
