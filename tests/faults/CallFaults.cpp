#include "faults/CallFaults.h"

#include <cerrno>
#include <cstring>
#include <map>

#include "support/FailingMemory.h"

namespace OrvuTests {
namespace {

thread_local int depthInLibrary = 0;

bool isAllocationRefused()
{
    return (depthInLibrary > 0 || isOnLibraryThread()) && allocations.turn() != 0;
}

const bool kAsked = (refuseAllocations(isAllocationRefused), true);

}  // namespace

CountedCall allocations;

const std::vector<int>& errorsOf(const CountedCall& call)
{
    static const std::map<const CountedCall*, std::vector<int>> kErrors = {
        {&allocations, {ENOMEM}},
        {&calls.socket, {EACCES, EAFNOSUPPORT, EMFILE, ENFILE, ENOBUFS, ENOMEM, EPROTONOSUPPORT}},
        {&calls.bind, {EACCES, EADDRINUSE, EADDRNOTAVAIL, EAFNOSUPPORT, EINVAL, ENOBUFS, ENOMEM}},
        {&calls.listen, {EACCES, EADDRINUSE, EDESTADDRREQ, EINVAL, ENOBUFS, EOPNOTSUPP}},
        {&calls.accept4,
         {EINTR, EAGAIN, ECONNABORTED, EINVAL, EMFILE, ENFILE, ENOBUFS, ENOMEM, EOPNOTSUPP, EPERM, EPROTO, ETIMEDOUT}},
        {&calls.connect,
         {EINTR, EACCES, EADDRINUSE, EADDRNOTAVAIL, EAFNOSUPPORT, EAGAIN, EALREADY, EINPROGRESS, ECONNREFUSED,
          ECONNRESET, EHOSTUNREACH, EIO, ENETDOWN, ENETUNREACH, ENOBUFS, EPERM, ETIMEDOUT}},
        {&calls.eventfd, {EINVAL, EMFILE, ENFILE, ENODEV, ENOMEM}},
        {&calls.eventfd_write, {EINTR}},
        {&calls.fcntl, {EACCES, EINVAL, EPERM}},
        {&calls.gethostbyname_r, {ENOMEM, EMFILE}},
        {&calls.getrandom, {EINTR, EAGAIN, ENOSYS}},
        {&calls.shutdown, {EINVAL, ENOBUFS, ENOTCONN}},
        {&calls.pthread_create, {EAGAIN, EINVAL, EPERM}},
        {&calls.setsockopt, {EDOM, EINVAL, EISCONN, ENOBUFS, ENOMEM, ENOPROTOOPT}},
        {&calls.getsockopt, {EACCES, EINVAL, ENOBUFS, ENOPROTOOPT}},
        {&calls.poll, {EINTR, EAGAIN, EINVAL, ENOMEM}},
        {&calls.recv,
         {kShort, EINTR, EAGAIN, ECONNREFUSED, ECONNRESET, EIO, ENOBUFS, ENOMEM, ENOTCONN, EOPNOTSUPP, ETIMEDOUT}},
        {&calls.send,
         {kShort, EINTR, EAGAIN, EACCES, ECONNRESET, EHOSTUNREACH, EIO, EMSGSIZE, ENETDOWN, ENETUNREACH, ENOBUFS,
          ENOMEM, ENOTCONN, EOPNOTSUPP, EPIPE}},
        {&calls.close, {EINTR, EDQUOT, EIO, ENOSPC}},
        {&calls.write, {kShort, EINTR, EAGAIN, EBADF, EDQUOT, EFBIG, EIO, ENOBUFS, ENOSPC, ENXIO, EPERM, EPIPE}},
    };
    return kErrors.at(&call);
}

bool passes(const CountedCall& call, int error)
{
    return error == EINTR || error == kShort || (error == EAGAIN && (&call == &calls.recv || &call == &calls.send));
}

std::string nameOf(int error)
{
    return error == kShort ? "one byte only" : std::strerror(error);
}

InLibrary::InLibrary()
{
    ++depthInLibrary;
}

InLibrary::~InLibrary()
{
    --depthInLibrary;
}

Progress::Progress()
    : receiving_(calls.recv,
                 [this](int fd, void* to, std::size_t size, int flags) { return receive(fd, to, size, flags); }),
      waiting_(calls.poll, [this](pollfd* wanted, nfds_t count, int) { return wait(wanted, count); }),
      accepting_(calls.accept4, [this](int fd, sockaddr* address, socklen_t* size, int flags) {
          return accept(fd, address, size, flags);
      })
{}

void Progress::restart()
{
    received_ = receivedBeforeWaiting_ = 0;
    accepted_ = acceptedBeforeWaiting_ = 0;
}

ssize_t Progress::receive(int fd, void* to, std::size_t size, int flags)
{
    const ssize_t got = calls.recv.real(fd, to, size, flags);
    if (got > 0) received_ += static_cast<std::size_t>(got);
    return got;
}

std::optional<int> Progress::wait(const pollfd* wanted, nfds_t count)
{
    if (count == 0) return 0;
    if (count == 1 && wanted->events == POLLIN) receivedBeforeWaiting_ = received_.load();
    return std::nullopt;
}

int Progress::accept(int fd, sockaddr* address, socklen_t* size, int flags)
{
    acceptedBeforeWaiting_ = accepted_.load();
    const int connection = calls.accept4.real(fd, address, size, flags);
    if (connection >= 0) ++accepted_;
    return connection;
}

}  // namespace OrvuTests
