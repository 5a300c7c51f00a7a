#include "push/Faults.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include "support/FailingMemory.h"
#include "support/Observed.h"

namespace OrvuTests {

std::atomic<int> minutesThatPass{0};
std::atomic<int> minutesThatFail{0};
std::atomic<int> sendsThatFindNoRoom{0};
std::atomic<int> sendsUntilOneFindsNoRoom{0};
std::atomic<std::size_t> mostThatIsSent{0};
std::atomic<int> acceptsWithoutDescriptor{0};
std::vector<int>* sentTo = nullptr;
std::atomic<int> awaitedShutdown{-1};
std::atomic<bool> isHeldUp{false};
std::atomic<bool> libraryHasNoMemory{false};
ifaddrs* interfaces = nullptr;

}  // namespace OrvuTests

using namespace OrvuTests;

namespace {

constexpr int kMinute = 60 * 1000;

bool happens(std::atomic<int>& fault)
{
    int left = fault;
    while (left > 0 && !fault.compare_exchange_weak(left, left - 1)) {
    }
    return left > 0;
}

bool isLibraryThread()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof name);
    return std::strncmp(name, "orvu-", 5) == 0;
}

void awaitShutdown()
{
    if (awaitedShutdown < 0 || !isLibraryThread()) return;
    isHeldUp = true;
    eventually([] { return awaitedShutdown < 0; });
    isHeldUp = false;
}

bool libraryIsRefused()
{
    return libraryHasNoMemory && isLibraryThread();
}

const bool kIsAsked = (refuseAllocations(libraryIsRefused), true);

}  // namespace

extern "C" {
int __real_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
ssize_t __real_recv(int fd, void* to, size_t size, int flags);
int __real_shutdown(int fd, int how);
int __real_poll(pollfd* wanted, nfds_t count, int timeout);
ssize_t __real_send(int fd, const void* bytes, size_t size, int flags);
ssize_t __real_sendmsg(int fd, const msghdr* message, int flags);

int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags)
{
    const int accepted = __real_accept4(fd, address, size, flags);
    if (accepted < 0 && errno == EMFILE) ++acceptsWithoutDescriptor;
    if (accepted >= 0) awaitShutdown();
    return accepted;
}

ssize_t __wrap_recv(int fd, void* to, size_t size, int flags)
{
    const ssize_t received = __real_recv(fd, to, size, flags);
    if (received > 0) awaitShutdown();
    return received;
}

int __wrap_shutdown(int fd, int how)
{
    const int result = __real_shutdown(fd, how);
    if (fd == awaitedShutdown) awaitedShutdown = -1;
    return result;
}

int __wrap_poll(pollfd* wanted, nfds_t count, int timeout)
{
    if (timeout == kMinute && happens(minutesThatFail)) {
        errno = ENOMEM;
        return -1;
    }
    if (timeout == kMinute && happens(minutesThatPass)) return 0;
    return __real_poll(wanted, count, timeout);
}

ssize_t __wrap_sendmsg(int fd, const msghdr* message, int flags)
{
    static std::atomic<int> sends{0};
    if (sentTo) sentTo->push_back(fd);
    const int period = sendsUntilOneFindsNoRoom;
    if (happens(sendsThatFindNoRoom) || (period > 0 && ++sends % period == 0)) {
        errno = EAGAIN;
        return -1;
    }
    if (mostThatIsSent == 0) return __real_sendmsg(fd, message, flags);
    std::size_t left = mostThatIsSent;
    iovec parts[2];
    msghdr shorter = *message;
    shorter.msg_iov = parts;
    for (std::size_t i = 0; i < message->msg_iovlen; ++i) {
        parts[i] = message->msg_iov[i];
        parts[i].iov_len = std::min(parts[i].iov_len, left);
        left -= parts[i].iov_len;
    }
    return __real_sendmsg(fd, &shorter, flags);
}

ssize_t __wrap_send(int fd, const void* bytes, size_t size, int flags)
{
    if (!(flags & MSG_DONTWAIT)) return __real_send(fd, bytes, size, flags);  // a peer, which may wait
    iovec part{const_cast<void*>(bytes), size};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    return __wrap_sendmsg(fd, &message, flags);
}

int __wrap_getifaddrs(ifaddrs** list)
{
    *list = interfaces;
    return interfaces ? 0 : -1;
}

void __wrap_freeifaddrs(ifaddrs*) {}
}
