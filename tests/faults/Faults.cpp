#include "faults/Faults.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include "support/FailingMemory.h"

namespace OrvuTests {
namespace {

struct Point {
    std::atomic<int> calls{0};
    std::atomic<int> nth{0};  // the call that fails; 0: none does
    std::atomic<int> error{0};
};

std::array<Point, static_cast<std::size_t>(Call::Write) + 1> points;
std::atomic<std::size_t> received{0};
std::atomic<std::size_t> receivedBeforeWaiting{0};
std::atomic<int> accepted{0};
std::atomic<int> acceptedBeforeWaiting{0};
thread_local int depthInLibrary = 0;

Point& pointOf(Call call)
{
    return points[static_cast<std::size_t>(call)];
}

/// Counts a call: its error number, kShort, or 0 when it goes through.
int faultOf(Call call)
{
    if (depthInLibrary == 0) return 0;
    Point& point = pointOf(call);
    return ++point.calls == point.nth ? point.error.load() : 0;
}

bool isAllocationRefused()
{
    return faultOf(Call::Allocation) != 0;
}

const bool kAsked = (refuseAllocations(isAllocationRefused), true);

}  // namespace

const std::vector<int>& errorsOf(Call call)
{
    static const std::map<Call, std::vector<int>> kErrors = {
        {Call::Allocation, {ENOMEM}},
        {Call::Socket, {EACCES, EAFNOSUPPORT, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT}},
        {Call::Bind, {EACCES, EADDRINUSE, EADDRNOTAVAIL, EAFNOSUPPORT, EINVAL, ENOBUFS, ENOMEM}},
        {Call::Listen, {EACCES, EADDRINUSE, EDESTADDRREQ, EINVAL, ENOBUFS, EOPNOTSUPP}},
        {Call::Accept,
         {EINTR, EAGAIN, ECONNABORTED, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EOPNOTSUPP, EPERM, EPROTO, ETIMEDOUT}},
        {Call::Connect,
         {EINTR, EACCES, EADDRINUSE, EADDRNOTAVAIL, EAFNOSUPPORT, EAGAIN, EALREADY, EINPROGRESS, ECONNREFUSED,
          ECONNRESET, EHOSTUNREACH, EIO, ENETDOWN, ENETUNREACH, ENOBUFS, EPERM, ETIMEDOUT}},
        {Call::CreateThread, {EAGAIN, EINVAL, EPERM}},
        {Call::SetOption, {EDOM, EINVAL, EISCONN, ENOBUFS, ENOMEM, ENOPROTOOPT}},
        {Call::GetOption, {EACCES, EINVAL, ENOBUFS, ENOPROTOOPT}},
        {Call::Poll, {EINTR, EAGAIN, EINVAL, ENOMEM}},
        {Call::Receive,
         {kShort, EINTR, EAGAIN, ECONNREFUSED, ECONNRESET, EIO, ENOBUFS, ENOMEM, ENOTCONN, EOPNOTSUPP, ETIMEDOUT}},
        {Call::Send,
         {kShort, EINTR, EAGAIN, EACCES, ECONNRESET, EHOSTUNREACH, EIO, EMSGSIZE, ENETDOWN, ENETUNREACH, ENOBUFS,
          ENOMEM, ENOTCONN, EOPNOTSUPP, EPIPE}},
        {Call::Write, {kShort, EINTR, EAGAIN, EBADF, EDQUOT, EFBIG, EIO, ENOBUFS, ENOSPC, ENXIO, EPERM, EPIPE}},
    };
    return kErrors.at(call);
}

bool passes(Call call, int error)
{
    return error == EINTR || error == kShort || (error == EAGAIN && (call == Call::Receive || call == Call::Send));
}

std::string nameOf(int error)
{
    return error == kShort ? "one byte only" : std::strerror(error);
}

void arm(const std::vector<Fault>& faults)
{
    received = receivedBeforeWaiting = 0;
    accepted = acceptedBeforeWaiting = 0;
    for (Point& point : points)
        point.calls = point.nth = point.error = 0;
    for (const Fault& fault : faults) {
        pointOf(fault.call).nth = fault.nth;
        pointOf(fault.call).error = fault.error;
    }
}

bool hasHappened(Call call)
{
    const Point& point = pointOf(call);
    return point.nth > 0 && point.calls >= point.nth;
}

InLibrary::InLibrary()
{
    ++depthInLibrary;
}

InLibrary::~InLibrary()
{
    --depthInLibrary;
}

std::size_t bytesReceived()
{
    return received;
}

std::size_t bytesDealtWith()
{
    return receivedBeforeWaiting;
}

int connectionsDealtWith()
{
    return acceptedBeforeWaiting;
}

}  // namespace OrvuTests

using namespace OrvuTests;

namespace {

/// Calls `real`, unless it is this call's turn to fail.
template <class Function, class... Arguments>
int unlessItFails(Call call, Function real, Arguments... arguments)
{
    const int error = faultOf(call);
    if (error == 0) return real(arguments...);
    errno = error;
    return -1;
}

/// The same for what takes or gives bytes: `real(size)` does it with so many at most.
template <class Function>
ssize_t unlessItFailsOrIsShort(Call call, std::size_t size, Function real)
{
    const int error = faultOf(call);
    if (error == 0) return real(size);
    if (error == kShort) return real(std::size_t{1});
    errno = error;
    return -1;
}

struct Start {
    void* (*routine)(void*);
    void* argument;
};

void* runInLibrary(void* given)
{
    const Start start = *static_cast<Start*>(given);
    std::free(given);
    const InLibrary mark;
    return start.routine(start.argument);
}

std::size_t sizeOf(const msghdr& message)
{
    std::size_t size = 0;
    for (std::size_t i = 0; i < message.msg_iovlen; ++i)
        size += message.msg_iov[i].iov_len;
    return size;
}

iovec firstByteOf(const msghdr& message)
{
    const iovec* part = message.msg_iov;
    while (part->iov_len == 0)
        ++part;
    return {part->iov_base, 1};
}

}  // namespace

extern "C" {
int __real_socket(int domain, int type, int protocol);
int __real_bind(int fd, const sockaddr* address, socklen_t size);
int __real_listen(int fd, int backlog);
int __real_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
int __real_connect(int fd, const sockaddr* address, socklen_t size);
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument);
int __real_setsockopt(int fd, int level, int option, const void* value, socklen_t size);
int __real_getsockopt(int fd, int level, int option, void* value, socklen_t* size);
int __real_poll(pollfd* wanted, nfds_t count, int timeout);
ssize_t __real_recv(int fd, void* to, size_t size, int flags);
ssize_t __real_send(int fd, const void* bytes, size_t size, int flags);
ssize_t __real_sendmsg(int fd, const msghdr* message, int flags);
ssize_t __real_write(int fd, const void* bytes, size_t size);

int __wrap_socket(int domain, int type, int protocol)
{
    return unlessItFails(Call::Socket, __real_socket, domain, type, protocol);
}

int __wrap_bind(int fd, const sockaddr* address, socklen_t size)
{
    return unlessItFails(Call::Bind, __real_bind, fd, address, size);
}

int __wrap_listen(int fd, int backlog)
{
    return unlessItFails(Call::Listen, __real_listen, fd, backlog);
}

int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags)
{
    if (depthInLibrary > 0) acceptedBeforeWaiting = accepted.load();
    const int connection = unlessItFails(Call::Accept, __real_accept4, fd, address, size, flags);
    if (depthInLibrary > 0 && connection >= 0) ++accepted;
    return connection;
}

/// An attempt that was interrupted goes on.
int __wrap_connect(int fd, const sockaddr* address, socklen_t size)
{
    const int error = faultOf(Call::Connect);
    if (error == 0) return __real_connect(fd, address, size);
    if (error == EINTR) __real_connect(fd, address, size);
    errno = error;
    return -1;
}

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument)
{
    if (depthInLibrary == 0) return __real_pthread_create(thread, attributes, routine, argument);
    if (const int error = faultOf(Call::CreateThread)) return error;
    auto* const start = static_cast<Start*>(std::malloc(sizeof(Start)));
    *start = {routine, argument};
    return __real_pthread_create(thread, attributes, runInLibrary, start);
}

/// SO_REUSEADDR is set all the same: without it the port could not be had again for a minute after the exchange.
int __wrap_setsockopt(int fd, int level, int option, const void* value, socklen_t size)
{
    if (level == SOL_SOCKET && option == SO_REUSEADDR) __real_setsockopt(fd, level, option, value, size);
    return unlessItFails(Call::SetOption, __real_setsockopt, fd, level, option, value, size);
}

int __wrap_getsockopt(int fd, int level, int option, void* value, socklen_t* size)
{
    return unlessItFails(Call::GetOption, __real_getsockopt, fd, level, option, value, size);
}

/// The library's pauses, which wait for nothing, are over at once.
int __wrap_poll(pollfd* wanted, nfds_t count, int timeout)
{
    if (depthInLibrary > 0 && count == 1 && wanted->events == POLLIN) receivedBeforeWaiting = received.load();
    return unlessItFails(Call::Poll, __real_poll, wanted, count, depthInLibrary > 0 && count == 0 ? 0 : timeout);
}

ssize_t __wrap_recv(int fd, void* to, size_t size, int flags)
{
    const ssize_t got =
        unlessItFailsOrIsShort(Call::Receive, size, [&](size_t most) { return __real_recv(fd, to, most, flags); });
    if (depthInLibrary > 0 && got > 0) received += static_cast<size_t>(got);
    return got;
}

ssize_t __wrap_send(int fd, const void* bytes, size_t size, int flags)
{
    return unlessItFailsOrIsShort(Call::Send, size, [&](size_t most) { return __real_send(fd, bytes, most, flags); });
}

ssize_t __wrap_sendmsg(int fd, const msghdr* message, int flags)
{
    return unlessItFailsOrIsShort(Call::Send, sizeOf(*message), [&](size_t most) {
        if (most != 1) return __real_sendmsg(fd, message, flags);
        iovec byte = firstByteOf(*message);
        msghdr shorter = *message;
        shorter.msg_iov = &byte;
        shorter.msg_iovlen = 1;
        return __real_sendmsg(fd, &shorter, flags);
    });
}

ssize_t __wrap_write(int fd, const void* bytes, size_t size)
{
    return unlessItFailsOrIsShort(Call::Write, size, [&](size_t most) { return __real_write(fd, bytes, most); });
}
}
