#include "transport/InFlight.h"

#include <algorithm>
#include <sys/socket.h>

namespace Orvu {

bool InFlight::enter(int fd, unsigned begun)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (closed_ || wakes_ != begun) return false;
    sockets_.push_back(fd);
    return true;
}

void InFlight::leave(int fd)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto place = std::find(sockets_.begin(), sockets_.end(), fd);
    if (place != sockets_.end()) {
        *place = sockets_.back();
        sockets_.pop_back();
    }
    if (sockets_.empty()) emptied_.notify_all();
}

void InFlight::wakeAll()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++wakes_;
    for (const int fd : sockets_)
        shutdown(fd, SHUT_RDWR);
}

void InFlight::close()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        closed_ = true;
    }
    wakeAll();
}

void InFlight::waitUntilEmpty()
{
    std::unique_lock<std::mutex> lock(mutex_);
    emptied_.wait(lock, [this] { return sockets_.empty(); });
}

Connection::Connection(Socket socket, std::shared_ptr<InFlight> inFlight, unsigned begun)
    : inFlight_(std::move(inFlight)), begun_(begun), isIn_(inFlight_->enter(socket.fd(), begun))
{
    if (isIn_) socket_ = std::move(socket);
}

Connection::Connection(Connection&& other) noexcept
    : socket_(std::move(other.socket_)),
      inFlight_(std::move(other.inFlight_)),
      begun_(other.begun_),
      isIn_(std::exchange(other.isIn_, false))
{}

Connection& Connection::operator=(Connection&& other) noexcept
{
    close();
    socket_ = std::move(other.socket_);
    inFlight_ = std::move(other.inFlight_);
    begun_ = other.begun_;
    isIn_ = std::exchange(other.isIn_, false);
    return *this;
}

Connection::~Connection()
{
    close();
}

void Connection::leave()
{
    if (std::exchange(isIn_, false)) inFlight_->leave(socket_.fd());
}

Socket Connection::takeSocket()
{
    leave();
    return std::move(socket_);
}

void Connection::close()
{
    leave();
    socket_ = Socket();
}

}  // namespace Orvu
