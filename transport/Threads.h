#pragma once

#include <memory>
#include <new>
#include <optional>
#include <pthread.h>
#include <utility>

namespace Orvu {

/// A mutex for static storage: ready before `main`, never destroyed, so that threads may use it while the process ends.
class StaticMutex {
public:
    void lock() { pthread_mutex_lock(&mutex_); }
    void unlock() { pthread_mutex_unlock(&mutex_); }

private:
    pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
};

/// What a thread does, and what it owns while it does it. The thread deletes it at its end.
class Task {
public:
    explicit Task(const char* threadName) : threadName_(threadName) {}  ///< At most 15 characters, static.
    virtual ~Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    virtual void run() = 0;
    const char* threadName() const { return threadName_; }

private:
    const char* const threadName_;
};

/// A task that calls `function`. Null when memory cannot be had.
template <class Function>
std::unique_ptr<Task> makeTask(const char* threadName, Function function)
{
    class Call : public Task {
    public:
        Call(const char* name, Function called) : Task(name), called_(std::move(called)) {}
        void run() override { called_(); }

    private:
        Function called_;
    };
    return std::unique_ptr<Task>(new (std::nothrow) Call(threadName, std::move(function)));
}

/// One thread of the library that somebody waits for. All signals are blocked in it.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { join(); }

    /// Runs `task`. False, and the task is deleted, without a task or when the system has no thread to give. Not twice
    /// without join().
    bool start(std::unique_ptr<Task> task);
    /// Waits for the thread's end. Nothing without a thread.
    void join();

private:
    std::optional<pthread_t> thread_;
};

/// Runs `task` on a thread that nobody waits for. False, and the task is deleted, when the system has no thread to give.
/// The new thread inherits the blocked signals: call it from a Thread.
bool startDetached(std::unique_ptr<Task> task);

}  // namespace Orvu
