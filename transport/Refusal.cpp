#include "transport/Refusal.h"

#include <arpa/inet.h>
#include <new>
#include <sys/socket.h>

#include "log/Log.h"
#include "messages/core/Explanation.h"

namespace Orvu {

std::string peerOf(int fd)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    char host[INET_ADDRSTRLEN] = "";
    if (getpeername(fd, reinterpret_cast<sockaddr*>(&address), &size) != 0) return "";
    inet_ntop(AF_INET, &address.sin_addr, host, sizeof host);
    return std::string(host) + ":" + std::to_string(ntohs(address.sin_port));
}

void logRefusal(const char* function, const std::string& peer, CheckedText& checked, DataType type)
{
    if (!isLogWanted()) return;
    try {
        const std::string fault = firstFault(checked, type);
        logLine("%s: %s: %s: %s", function, peer.c_str(), Serializable::dataTypeString(type), fault.c_str());
    } catch (const std::bad_alloc&) {
        // the line before says that the text was refused
    }
}

}  // namespace Orvu
