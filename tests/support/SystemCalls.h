#pragma once

#include <arpa/inet.h>
#include <cstddef>
#include <ifaddrs.h>
#include <netdb.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/types.h>

#include "support/SystemCall.h"

/// \file
/// The one place between the library and the system. In a program of `orvu_tests(NAME SYSTEM_CALLS ...)` each call of
/// the system in the library's code comes here first, on whatever thread. The calls in the tests do not, nor do those
/// in cJSON and the C++ library. support/FailingMemory.h does the same for memory.
///
///     const FailingCall second(calls.bind, 2, EADDRINUSE);  // the second bind from now on fails
///
///     const Instead closing(calls.close, [&](int fd) {      // each close does this
///         if (fd == known) ++closings;
///         return std::nullopt;                              // and then what it always does
///     });
///
///     calls.connect.count()                                 // how many there were, since the last FailingCall if any

namespace OrvuTests {

/// The system calls of the library.
struct SystemCalls {
    SystemCalls();

    SystemCall<int(int fd, sockaddr* address, socklen_t* size, int flags)> accept4{::accept4};
    SystemCall<int(int fd, const sockaddr* address, socklen_t size)> bind{::bind};
    SystemCall<int(int fd)> close;
    SystemCall<int(int fd, const sockaddr* address, socklen_t size)> connect;
    SystemCall<int(unsigned count, int flags)> eventfd{::eventfd};
    SystemCall<int(int fd, eventfd_t value)> eventfd_write{::eventfd_write};
    SystemCall<int(int fd, int command, int argument)> fcntl;
    SystemCall<void(addrinfo* list)> freeaddrinfo{::freeaddrinfo};
    SystemCall<void(ifaddrs* list)> freeifaddrs{::freeifaddrs};
    SystemCall<int(const char* name, const char* service, const addrinfo* hints, addrinfo** list)> getaddrinfo;
    SystemCall<int(const char* name, hostent* host, char* buffer, std::size_t size, hostent** found, int* reason)>
        gethostbyname_r;
    SystemCall<int(ifaddrs** list)> getifaddrs{::getifaddrs};
    SystemCall<ssize_t(void* to, std::size_t size, unsigned flags)> getrandom{::getrandom};
    SystemCall<int(int fd, sockaddr* address, socklen_t* size)> getsockname{::getsockname};
    SystemCall<int(int fd, int level, int option, void* value, socklen_t* size)> getsockopt{::getsockopt};
    SystemCall<const char*(int family, const void* address, char* text, socklen_t size)> inet_ntop{::inet_ntop};
    SystemCall<int(int fd, int backlog)> listen{::listen};
    SystemCall<int(pollfd* wanted, nfds_t count, int timeout)> poll{::poll};
    SystemCall<int(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument)>
        pthread_create;
    SystemCall<ssize_t(int fd, void* to, std::size_t size, int flags)> recv;
    SystemCall<ssize_t(int fd, const msghdr* message, int flags)> send;  ///< `send`, as one part, and `sendmsg`.
    SystemCall<int(int fd, int level, int option, const void* value, socklen_t size)> setsockopt;
    SystemCall<int(int fd, int how)> shutdown{::shutdown};
    SystemCall<int(int domain, int type, int protocol)> socket{::socket};
    SystemCall<ssize_t(int fd, const void* bytes, std::size_t size)> write;
};

extern SystemCalls calls;

/// Whether the library has started the calling thread.
bool isOnLibraryThread();

}  // namespace OrvuTests
