#include "transport/Threads.h"

#include <csignal>

namespace Orvu {
namespace {

class AllSignalsBlocked {
public:
    AllSignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_;
};

void* runTask(void* argument)
{
    const std::unique_ptr<Task> task(static_cast<Task*>(argument));
    pthread_setname_np(pthread_self(), task->threadName());
    task->run();
    return nullptr;
}

/// std::thread would throw where this is false.
bool create(pthread_t& thread, const pthread_attr_t* attributes, std::unique_ptr<Task> task)
{
    if (pthread_create(&thread, attributes, runTask, task.get()) != 0) return false;
    task.release();
    return true;
}

}  // namespace

bool Thread::start(std::unique_ptr<Task> task)
{
    if (!task) return false;
    const AllSignalsBlocked inheritedByTheThread;
    pthread_t thread;
    if (!create(thread, nullptr, std::move(task))) return false;
    thread_ = thread;
    return true;
}

void Thread::join()
{
    if (thread_) pthread_join(*thread_, nullptr);
    thread_.reset();
}

bool startDetached(std::unique_ptr<Task> task)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread;
    const bool started = create(thread, &attributes, std::move(task));
    pthread_attr_destroy(&attributes);
    return started;
}

}  // namespace Orvu
