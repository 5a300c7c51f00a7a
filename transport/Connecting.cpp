#include "transport/Connecting.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <sys/socket.h>
#include <vector>

namespace Orvu {
namespace {

bool isIPv6(const std::string& host)
{
    in6_addr address;
    return inet_pton(AF_INET6, host.substr(0, host.find('%')).c_str(), &address) == 1;
}

int errorOfLookup(int reason)
{
    if (reason == NO_DATA) return EAFNOSUPPORT;
    if (reason == TRY_AGAIN) return EAGAIN;
    return reason == NETDB_INTERNAL ? errno : 0;
}

}  // namespace

std::optional<in_addr> resolved(const std::string& host, int& error)
{
    in_addr address;
    if (inet_pton(AF_INET, host.c_str(), &address) == 1) return address;
    if (isIPv6(host)) {  // which some systems would ask a name server for
        error = EAFNOSUPPORT;
        return std::nullopt;
    }
    std::vector<char> room(1024);
    hostent entry;
    hostent* found = nullptr;
    int reason = NO_DATA;
    while (gethostbyname_r(host.c_str(), &entry, room.data(), room.size(), &found, &reason) == ERANGE)
        room.resize(2 * room.size());
    if (!found || found->h_addrtype != AF_INET || !found->h_addr_list[0]) {
        error = errorOfLookup(found ? NO_DATA : reason);
        return std::nullopt;
    }
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return address;
}

int pendingError(int fd)
{
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

int connectTo(int fd, const in_addr& host, int port, Seconds patience)
{
    if (port < 0 || port > 65535) return EINVAL;
    const sockaddr_in address = addressOf(host, port);
    const Deadline deadline = endOf(patience);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return 0;
    if (errno != EINTR) return withTimeOut(errno);
    // A call cut short leaves the attempt going on.
    return waitFor(fd, POLLOUT, deadline) ? pendingError(fd) : withTimeOut(errno);
}

}  // namespace Orvu
