#include "transport/ListenAddress.h"

#include <arpa/inet.h>
#include <cerrno>
#include <ifaddrs.h>
#include <memory>
#include <sys/socket.h>

#include "log/Log.h"
#include "transport/Socket.h"

namespace Orvu {
namespace {

/// The system lets nobody else bind it. Without a descriptor to ask with, binding will say so.
bool isOfThisHost(in_addr host)
{
    if (IN_MULTICAST(ntohl(host.s_addr)) || host.s_addr == INADDR_BROADCAST) return false;
    const Socket socket = Socket::stream();
    const sockaddr_in address = addressOf(host, 0);
    return !socket || bind(socket.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ||
           errno != EADDRNOTAVAIL;
}

std::string textOf(const sockaddr& address)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
    return text;
}

std::string firstOutsideAddress(const ifaddrs* interfaces)
{
    for (const ifaddrs* entry = interfaces; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) continue;
        const std::string text = textOf(*entry->ifa_addr);
        if (text == "127.0.0.1") continue;
        logLine("valid IPv4 Address found");
        return text;
    }
    return "127.0.0.1";
}

}  // namespace

std::optional<in_addr> ListenAddress::usable(const char* caller) const
{
    in_addr address{htonl(INADDR_ANY)};
    if (!isOne()) return address;
    if (inet_pton(AF_INET, text_.c_str(), &address) == 1 && isOfThisHost(address)) return address;
    logLine("%s: ERROR no IPv4 address of this host: %s", caller, text_.c_str());
    return std::nullopt;
}

std::string outsideAddress()
{
    ifaddrs* list = nullptr;
    getifaddrs(&list);
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> interfaces(list, freeifaddrs);
    std::string address = firstOutsideAddress(interfaces.get());
    if (!address.empty()) return address;
    logLine("Cannot resolve the current IP. Check your network!");
    return "127.0.0.1";
}

}  // namespace Orvu
