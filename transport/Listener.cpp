#include "transport/Listener.h"

#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace Orvu {

bool bindTo(const Socket& socket, int port)
{
    if (port < 0 || port > 65535) return false;
    const int on = 1;
    setsockopt(socket.fd(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    address.sin_port = htons(static_cast<in_port_t>(port));
    return bind(socket.fd(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

void sendAtOnce(const Socket& socket)
{
    const int on = 1;
    setsockopt(socket.fd(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool isLasting(int reason)
{
    return reason != ECONNABORTED && reason != EPROTO;
}

bool isWantOfDescriptors(int reason)
{
    return reason == EMFILE || reason == ENFILE;
}

void pauseAccepting()
{
    constexpr int kMilliseconds = 100;
    poll(nullptr, 0, kMilliseconds);
}

}  // namespace Orvu
