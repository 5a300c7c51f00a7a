#include "push/PushServers.h"

#include <fstream>

namespace OrvuTests {
namespace {

/// The most that the system keeps on its way out.
std::size_t longestSendBuffer()
{
    std::size_t least = 0;
    std::size_t usual = 0;
    std::size_t most = 0;
    std::ifstream("/proc/sys/net/ipv4/tcp_wmem") >> least >> usual >> most;
    return most;
}

}  // namespace

const std::string& tooMuch()
{
    static const std::string kMessage(longestSendBuffer() + (std::size_t{1} << 20), 'x');
    return kMessage;
}

}  // namespace OrvuTests
