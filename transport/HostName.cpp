#include "transport/HostName.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <vector>

namespace Orvu {
namespace {

bool isIPv6(const std::string& host)
{
    in6_addr address;
    return inet_pton(AF_INET6, host.substr(0, host.find('%')).c_str(), &address) == 1;
}

int errorOf(int reason)
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
    std::vector<char> room(1024);
    hostent entry;
    hostent* found = nullptr;
    int reason = NO_DATA;
    while (gethostbyname_r(host.c_str(), &entry, room.data(), room.size(), &found, &reason) == ERANGE)
        room.resize(2 * room.size());
    if (!found || found->h_addrtype != AF_INET || !found->h_addr_list[0]) {
        error = isIPv6(host) ? EAFNOSUPPORT : errorOf(found ? NO_DATA : reason);
        return std::nullopt;
    }
    std::memcpy(&address, found->h_addr_list[0], sizeof address);
    return address;
}

}  // namespace Orvu
