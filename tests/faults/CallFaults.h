#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "support/SystemCalls.h"

/// \file
/// Which faults the things can have that the library asks for, and how far it has come.

namespace OrvuTests {

/// What the library allocates with `new`, cJSON or `realloc`: on its own threads, and in what `inLibrary` calls.
extern CountedCall allocations;

/// The errors that POSIX and Linux allow the call, EINTR and kShort among them where it can be interrupted or short;
/// without those that only a wrong argument has, such as EBADF.
const std::vector<int>& errorsOf(const CountedCall& call);

/// Whether the call is to be made once more, or continued, as if nothing had been.
bool passes(const CountedCall& call, int error);

/// What `error` is called in a message.
std::string nameOf(int error);

/// While it lives, what its thread allocates counts as the library's.
class InLibrary {
public:
    InLibrary();
    ~InLibrary();
    InLibrary(const InLibrary&) = delete;
    InLibrary& operator=(const InLibrary&) = delete;
};

/// Calls a function of the library.
template <class Function>
auto inLibrary(Function function)
{
    const InLibrary mark;
    return function();
}

/// Sees how far the library has come. Its pauses, which wait for nothing, are over at once.
class Progress {
public:
    Progress();
    /// The bytes that the library has received since the last restart.
    std::size_t bytesReceived() const { return received_; }
    /// How many of them it was done with when it last waited for more.
    std::size_t bytesDealtWith() const { return receivedBeforeWaiting_; }
    /// How many connections it was done with when it last waited for one.
    int connectionsDealtWith() const { return acceptedBeforeWaiting_; }
    /// While no thread of the library runs.
    void restart();

private:
    ssize_t receive(int fd, void* to, std::size_t size, int flags);
    std::optional<int> wait(const pollfd* wanted, nfds_t count);
    int accept(int fd, sockaddr* address, socklen_t* size, int flags);

    std::atomic<std::size_t> received_{0};
    std::atomic<std::size_t> receivedBeforeWaiting_{0};
    std::atomic<int> accepted_{0};
    std::atomic<int> acceptedBeforeWaiting_{0};
    const Instead receiving_;
    const Instead waiting_;
    const Instead accepting_;
};

}  // namespace OrvuTests
