#pragma once

#include <cerrno>
#include <string>
#include <vector>

#include "support/SystemCalls.h"

namespace OrvuTests {

/// The interfaces that the library finds on this machine while it lives, by their addresses: "" for one without an
/// address, another text than an IPv4 address for one of another family. Where there is none, the system gives no list.
class Interfaces {
public:
    explicit Interfaces(const std::vector<std::string>& addresses)
        : entries_(addresses.size()),
          addresses_(addresses.size()),
          asking_(calls.getifaddrs, [this](ifaddrs** list) { return give(list); }),
          releasing_(calls.freeifaddrs, [](ifaddrs*) { return true; })
    {
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            const bool isIPv4 = inet_pton(AF_INET, addresses[i].c_str(), &addresses_[i].sin_addr) == 1;
            addresses_[i].sin_family = isIPv4 ? AF_INET : AF_INET6;
            if (!addresses[i].empty()) entries_[i].ifa_addr = reinterpret_cast<sockaddr*>(&addresses_[i]);
            if (i > 0) entries_[i - 1].ifa_next = &entries_[i];
        }
    }

private:
    int give(ifaddrs** list)
    {
        *list = entries_.data();
        if (*list) return 0;
        errno = ENOBUFS;
        return -1;
    }

    std::vector<ifaddrs> entries_;
    std::vector<sockaddr_in> addresses_;
    const Instead asking_;
    const Instead releasing_;
};

}  // namespace OrvuTests
