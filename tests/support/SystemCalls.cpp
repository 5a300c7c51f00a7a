#include "support/SystemCalls.h"

#include <cstdarg>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace OrvuTests {
namespace {

int failWithNumber(int error)
{
    errno = error;
    return -1;
}

/// The descriptor is gone all the same.
int failToClose(int error, int fd)
{
    ::close(fd);
    return failWithNumber(error);
}

/// An attempt that was interrupted goes on.
int failToConnect(int error, int fd, const sockaddr* address, socklen_t size)
{
    if (error == EINTR) ::connect(fd, address, size);
    return failWithNumber(error);
}

int realFcntl(int fd, int command, int argument)
{
    return ::fcntl(fd, command, argument);
}

int failToResolve(int error, const char*, const char*, const addrinfo*, addrinfo**)
{
    return error;
}

int failToFindHost(int error, const char*, hostent*, char*, std::size_t, hostent** found, int* reason)
{
    *found = nullptr;
    *reason = NETDB_INTERNAL;
    return error;
}

ssize_t receiveOneByteOrFail(int error, int fd, void* to, std::size_t, int flags)
{
    return error == kShort ? calls.recv.unfailing(fd, to, 1, flags) : failWithNumber(error);
}

ssize_t realSend(int fd, const msghdr* message, int flags)
{
    if (message->msg_iovlen != 1) return ::sendmsg(fd, message, flags);
    return ::send(fd, message->msg_iov->iov_base, message->msg_iov->iov_len, flags);
}

ssize_t sendOneByteOrFail(int error, int fd, const msghdr* message, int flags)
{
    if (error != kShort) return failWithNumber(error);
    const iovec* part = message->msg_iov;
    while (part->iov_len == 0)
        ++part;
    iovec byte{part->iov_base, 1};
    msghdr shorter = *message;
    shorter.msg_iov = &byte;
    shorter.msg_iovlen = 1;
    return calls.send.unfailing(fd, &shorter, flags);
}

/// SO_REUSEADDR is set all the same: without it the port could not be bound again for a minute after the exchange.
int failToSetOption(int error, int fd, int level, int option, const void* value, socklen_t size)
{
    if (level == SOL_SOCKET && option == SO_REUSEADDR) ::setsockopt(fd, level, option, value, size);
    return failWithNumber(error);
}

ssize_t writeOneByteOrFail(int error, int fd, const void* bytes, std::size_t)
{
    return error == kShort ? calls.write.unfailing(fd, bytes, 1) : failWithNumber(error);
}

thread_local bool isLibraryThread = false;

struct Start {
    void* (*routine)(void*);
    void* argument;
};

void* runLibraryThread(void* given)
{
    const Start start = *static_cast<Start*>(given);
    std::free(given);
    isLibraryThread = true;
    return start.routine(start.argument);
}

int startLibraryThread(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument)
{
    auto* const start = static_cast<Start*>(std::malloc(sizeof(Start)));  // `new` may be one that fails
    *start = {routine, argument};
    const int error = ::pthread_create(thread, attributes, runLibraryThread, start);
    if (error != 0) std::free(start);
    return error;
}

int failToStartThread(int error, pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)
{
    return error;
}

}  // namespace

SystemCalls::SystemCalls()
    : close(::close, failToClose),
      connect(::connect, failToConnect),
      fcntl(realFcntl),
      getaddrinfo(::getaddrinfo, failToResolve),
      gethostbyname_r(::gethostbyname_r, failToFindHost),
      pthread_create(startLibraryThread, failToStartThread),
      recv(::recv, receiveOneByteOrFail),
      send(realSend, sendOneByteOrFail),
      setsockopt(::setsockopt, failToSetOption),
      write(::write, writeOneByteOrFail)
{}

SystemCalls calls;

bool isOnLibraryThread()
{
    return isLibraryThread;
}

}  // namespace OrvuTests

using OrvuTests::calls;

// The linker puts these in the place of the calls in the library's objects: CMakeLists.txt has the same list.
#define FROM_LIBRARY(name, parameters, arguments)                 \
    auto __wrap_##name parameters->decltype(calls.name arguments) \
    {                                                             \
        return calls.name arguments;                              \
    }

extern "C" {
FROM_LIBRARY(accept4, (int fd, sockaddr* address, socklen_t* size, int flags), (fd, address, size, flags))
FROM_LIBRARY(bind, (int fd, const sockaddr* address, socklen_t size), (fd, address, size))
FROM_LIBRARY(close, (int fd), (fd))
FROM_LIBRARY(connect, (int fd, const sockaddr* address, socklen_t size), (fd, address, size))
FROM_LIBRARY(eventfd, (unsigned count, int flags), (count, flags))
FROM_LIBRARY(eventfd_write, (int fd, eventfd_t value), (fd, value))
FROM_LIBRARY(freeaddrinfo, (addrinfo * list), (list))
FROM_LIBRARY(freeifaddrs, (ifaddrs * list), (list))
FROM_LIBRARY(getaddrinfo, (const char* name, const char* service, const addrinfo* hints, addrinfo** list),
             (name, service, hints, list))
FROM_LIBRARY(gethostbyname_r,
             (const char* name, hostent* host, char* buffer, std::size_t size, hostent** found, int* reason),
             (name, host, buffer, size, found, reason))
FROM_LIBRARY(getifaddrs, (ifaddrs * *list), (list))
FROM_LIBRARY(getrandom, (void* to, std::size_t size, unsigned flags), (to, size, flags))
FROM_LIBRARY(getsockname, (int fd, sockaddr* address, socklen_t* size), (fd, address, size))
FROM_LIBRARY(getsockopt, (int fd, int level, int option, void* value, socklen_t* size),
             (fd, level, option, value, size))
FROM_LIBRARY(inet_ntop, (int family, const void* address, char* text, socklen_t size), (family, address, text, size))
FROM_LIBRARY(listen, (int fd, int backlog), (fd, backlog))
FROM_LIBRARY(poll, (pollfd * wanted, nfds_t count, int timeout), (wanted, count, timeout))
FROM_LIBRARY(pthread_create,
             (pthread_t * thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument),
             (thread, attributes, routine, argument))
FROM_LIBRARY(recv, (int fd, void* to, std::size_t size, int flags), (fd, to, size, flags))
FROM_LIBRARY(setsockopt, (int fd, int level, int option, const void* value, socklen_t size),
             (fd, level, option, value, size))
FROM_LIBRARY(shutdown, (int fd, int how), (fd, how))
FROM_LIBRARY(socket, (int domain, int type, int protocol), (domain, type, protocol))
FROM_LIBRARY(write, (int fd, const void* bytes, std::size_t size), (fd, bytes, size))

int __wrap_fcntl(int fd, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    const int argument = va_arg(rest, int);
    va_end(rest);
    return calls.fcntl(fd, command, argument);
}

ssize_t __wrap_send(int fd, const void* bytes, std::size_t size, int flags)
{
    iovec part{const_cast<void*>(bytes), size};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    return calls.send(fd, &message, flags);
}

ssize_t __wrap_sendmsg(int fd, const msghdr* message, int flags)
{
    return calls.send(fd, message, flags);
}
}
