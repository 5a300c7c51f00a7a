#include "transport/Threads.h"

#include "log/Log.h"

namespace Orvu {
namespace {

sigset_t allButFaults()
{
    sigset_t signals;
    sigfillset(&signals);
    for (const int open : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS, SIGPROF})
        sigdelset(&signals, open);
    return signals;
}

/// Nothing where threads cannot be cancelled, as on Android.
void setCancellable([[maybe_unused]] bool isCancellable)
{
#ifdef PTHREAD_CANCEL_ENABLE
    int before;
    pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, &before);
    pthread_setcancelstate(isCancellable ? PTHREAD_CANCEL_ENABLE : PTHREAD_CANCEL_DISABLE, &before);
#endif
}

void* runTask(void* argument)
{
    const std::unique_ptr<Task> task(static_cast<Task*>(argument));
    becomeLibraryThread(task->threadName());
    task->run();
    return nullptr;
}

}  // namespace

const sigset_t& librarySignals()
{
    static const sigset_t kSignals = allButFaults();
    return kSignals;
}

sigset_t signalsOfThisThread()
{
    sigset_t signals;
    pthread_sigmask(SIG_SETMASK, nullptr, &signals);
    return signals;
}

int createThread(pthread_t& thread, void* (*function)(void*), void* argument)
{
    sigset_t before;
    pthread_sigmask(SIG_SETMASK, &librarySignals(), &before);  // the thread inherits it
    const int result = pthread_create(&thread, nullptr, function, argument);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return result;
}

void becomeLibraryThread(const char* name)
{
    setCancellable(false);
    pthread_setname_np(pthread_self(), name);
    setSigpipeBlocked(true);
}

ApplicationsTurn::ApplicationsTurn(const sigset_t& signals, const char* name) : name_(name)
{
    setSigpipeBlocked(false);
    pthread_sigmask(SIG_SETMASK, &signals, nullptr);
    setCancellable(true);
}

ApplicationsTurn::~ApplicationsTurn()
{
    pthread_sigmask(SIG_SETMASK, &librarySignals(), nullptr);
    becomeLibraryThread(name_);
}

bool Thread::start(std::unique_ptr<Task> task)
{
    pthread_t thread;
    if (!task || createThread(thread, runTask, task.get()) != 0) return false;
    static_cast<void>(task.release());  // the thread's
    thread_ = thread;
    return true;
}

void Thread::join()
{
    if (thread_) pthread_join(*thread_, nullptr);
    thread_.reset();
}

void Thread::detach()
{
    if (thread_) pthread_detach(*thread_);
    thread_.reset();
}

}  // namespace Orvu
