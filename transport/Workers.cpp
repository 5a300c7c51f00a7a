#include "transport/Workers.h"

#include <algorithm>
#include <condition_variable>
#include <new>
#include <optional>
#include <pthread.h>

#include "log/Log.h"
#include "transport/RequestCallback.h"
#include "transport/RequestReceiver.h"
#include "transport/Threads.h"

namespace Orvu {
namespace {

constexpr std::size_t kMostIdle = 8;
constexpr Seconds kIdleTime{10};
constexpr char kName[] = "orvu-worker";

}  // namespace

/// What one thread serves with. It is deleted when the thread ends, however it does: a callback may end it without
/// unwinding its stack, so nothing that matters may be held there meanwhile.
class Workers::Worker {
public:
    Worker(std::shared_ptr<Workers> workers, Connection connection)
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
    Connection connection_;
    bool isInCallback_ = false;

    // While it idles, under the mutex of the workers:
    std::condition_variable called_;
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
    connection_ = Connection();
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
        const ApplicationsTurn turn(workers_->signals(), kName);
        if (!notify(callback, handedOver)) delete handedOver;
    }
    endCallback();
}

void Workers::Worker::endCallback()
{
    isInCallback_ = false;
    RunningCallbacks::end();
}

Workers::Workers()
{
    idle_.reserve(kMostIdle);
}

void Workers::open(const sigset_t& signals)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    signals_ = signals;
    isOpen_ = true;
}

sigset_t Workers::signals()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return signals_;
}

bool Workers::serve(Connection connection)
{
    if (handOver(connection)) return true;
    try {
        auto worker = std::make_unique<Worker>(shared_from_this(), std::move(connection));
        pthread_t thread;
        if (createThread(thread, Worker::run, worker.get()) != 0) return false;
        static_cast<void>(worker.release());  // the thread's
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// False when no worker idles.
bool Workers::handOver(Connection& connection)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (idle_.empty()) return false;
    Worker& worker = *idle_.back();  // the one whose memory the processor still knows best
    idle_.pop_back();
    worker.connection_ = std::move(connection);
    worker.called_.notify_one();  // under the mutex: without it, the worker might have come to its end by now
    return true;
}

/// Waits for a connection. False when the thread is to end instead.
bool Workers::idle(Worker& worker)
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (!isOpen_ || idle_.size() == kMostIdle) return false;
    worker.thread_ = pthread_self();
    idle_.push_back(&worker);
    const bool wasCalled = worker.called_.wait_until(
        lock, after(kIdleTime), [&worker] { return worker.connection_ || worker.isJoined_; });
    if (!wasCalled) idle_.erase(std::find(idle_.begin(), idle_.end(), &worker));
    return wasCalled && !worker.isJoined_;
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
            worker->called_.notify_one();
            ending[count++] = worker->thread_;
        }
        idle_.clear();
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
