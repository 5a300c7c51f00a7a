#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// \file
/// Stands between the library's objects and the system: each thing that they ask of it can be made to fail, the n-th time
/// that they ask. What the tests themselves ask goes through.

namespace OrvuTests {

/// What the library asks of the system. An allocation is one of `new`, of cJSON, or of the library's `realloc`.
enum class Call {
    Allocation,
    Socket,
    Bind,
    Listen,
    Accept,
    Connect,
    CreateThread,
    SetOption,
    GetOption,
    Poll,
    Receive,
    Send,
    Write,
};

/// Instead of an error number: one byte is taken or given.
constexpr int kShort = -1;

/// The n-th call of a kind, counted from 1, fails with `error`.
struct Fault {
    Call call;
    int nth;
    int error;
};

/// The errors that POSIX and Linux allow the call, EINTR and kShort among them where it can be interrupted or short; without
/// those that only a wrong argument has, such as EBADF.
const std::vector<int>& errorsOf(Call call);

/// Whether the call is to be made once more, or continued, as if nothing had been.
bool passes(Call call, int error);

/// What `error` is called in a message.
std::string nameOf(int error);

/// From now on the library's calls count anew and meet these faults, one for each kind of call at most. While none of its
/// threads runs.
void arm(const std::vector<Fault>& faults);
/// Whether the fault of this kind has been met.
bool hasHappened(Call call);

/// While it lives, what its thread asks of the system counts as asked by the library. Threads that the library starts need none.
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

/// The bytes that the library has received since it was armed.
std::size_t bytesReceived();
/// How many of them it was done with when it last waited for more.
std::size_t bytesDealtWith();
/// How many connections it was done with when it last waited for one.
int connectionsDealtWith();

}  // namespace OrvuTests
