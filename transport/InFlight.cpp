#include "transport/InFlight.h"

#include <algorithm>
#include <sys/socket.h>

namespace Orvu {

bool InFlight::enter(int fd)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!closing_) sockets_.push_back(fd);
    return !closing_;
}

bool InFlight::leave(int fd)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = std::find(sockets_.begin(), sockets_.end(), fd);
    if (place != sockets_.end()) {
        *place = sockets_.back();
        sockets_.pop_back();
    }
    if (sockets_.empty()) emptied_.notify_all();
    return !closing_;
}

void InFlight::wakeAll()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    closing_ = true;
    for (const int fd : sockets_)
        shutdown(fd, SHUT_RDWR);
}

void InFlight::waitUntilEmpty()
{
    std::unique_lock<std::mutex> lock(mutex_);
    emptied_.wait(lock, [this] { return sockets_.empty(); });
}

Connection::Connection(Socket socket, std::shared_ptr<InFlight> inFlight)
{
    if (!inFlight->enter(socket.fd())) return;
    socket_ = std::move(socket);
    inFlight_ = std::move(inFlight);
    wantedIn_ = inFlight_;
}

Connection::~Connection()
{
    close();
}

bool Connection::leave()
{
    const std::shared_ptr<InFlight> inFlight = std::move(inFlight_);
    return inFlight ? inFlight->leave(socket_.fd()) : isWanted();
}

void Connection::close()
{
    leave();
    socket_ = Socket();
}

}  // namespace Orvu
