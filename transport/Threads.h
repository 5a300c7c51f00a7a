#pragma once

#include <csignal>
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

/// A task that calls `function`. Null when out of memory.
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

/// The signal mask of the library's threads: all that ask a process for something are blocked, so that an application's
/// handlers run on its own threads. Those of a fault stay open, for a crash to leave its trace, and so does SIGPROF.
const sigset_t& librarySignals();

/// The signal mask of the calling thread.
sigset_t signalsOfThisThread();

/// Starts a thread with the library's signal mask; what pthread_create returns.
int createThread(pthread_t& thread, void* (*function)(void*), void* argument);

/// Makes the calling thread, which createThread() started, one of the library's: its name (at most 15 characters), and
/// cancelling it has no effect.
void becomeLibraryThread(const char* name);

/// While it lives, a thread of the library is as the application's code may expect it: it has the signal mask `signals`
/// and can be cancelled. Afterwards it is the library's again, whatever that code did to its mask, its name `name` and
/// its cancellation state.
class ApplicationsTurn {
public:
    ApplicationsTurn(const sigset_t& signals, const char* name);
    ~ApplicationsTurn();
    ApplicationsTurn(const ApplicationsTurn&) = delete;
    ApplicationsTurn& operator=(const ApplicationsTurn&) = delete;

private:
    const char* const name_;
};

/// One thread of the library that its owner joins.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { join(); }

    /// Runs `task`. False, and the task is deleted, without a task or when the system has no thread to give. Not twice
    /// without join().
    bool start(std::unique_ptr<Task> task);
    /// Waits until the thread has ended. Does nothing without a thread.
    void join();
    /// Lets the thread end by itself. Does nothing without a thread.
    void detach();

private:
    std::optional<pthread_t> thread_;
};

/// Lives as long as the process, whatever ends before: threads may use it while static objects go.
template <class Type>
class Immortal {
public:
    template <class... Arguments>
    explicit Immortal(Arguments&&... arguments)
    {
        new (place_) Type(std::forward<Arguments>(arguments)...);
    }
    Type* operator->() { return std::launder(reinterpret_cast<Type*>(place_)); }
    Type& operator*() { return *operator->(); }

private:
    alignas(Type) unsigned char place_[sizeof(Type)];
};

}  // namespace Orvu
