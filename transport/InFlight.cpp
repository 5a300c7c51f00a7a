#include "transport/InFlight.h"

#include <algorithm>
#include <sys/socket.h>

namespace Orvu {

namespace {

/// Removes `item`; the order of the others may change.
template <class Item>
void remove(std::vector<Item>& items, Item item)
{
    const auto place = std::find(items.begin(), items.end(), item);
    if (place == items.end()) return;
    *place = items.back();
    items.pop_back();
}

}  // namespace

bool InFlight::enter(int fd, unsigned begun, InGroup* exchange)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (closed_ || wakes_ != begun || (exchange && exchange->isWoken_)) return false;
    sockets_.push_back(fd);
    if (exchange) exchange->fd_ = fd;
    return true;
}

void InFlight::leave(int fd, InGroup* exchange)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    remove(sockets_, fd);
    if (exchange) leaveGroup(*exchange);
    if (sockets_.empty()) emptied_.notify_all();
}

/// With the mutex held. An exchange that has lost its connection has nothing left to be woken from.
void InFlight::leaveGroup(InGroup& exchange)
{
    if (std::exchange(exchange.isListed_, false)) remove(inGroups_, &exchange);
}

void InFlight::wakeAll()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++wakes_;
    for (const int fd : sockets_)
        shutdown(fd, SHUT_RDWR);
}

void InFlight::wake(const void* group)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    for (InGroup* const exchange : inGroups_) {
        if (exchange->group_ != group) continue;
        exchange->isWoken_ = true;
        if (exchange->fd_ >= 0) shutdown(exchange->fd_, SHUT_RDWR);
    }
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

InGroup::InGroup(InFlight& inFlight, const void* group) : inFlight_(inFlight), group_(group)
{
    if (!group_) return;
    const std::lock_guard<std::mutex> lock(inFlight_.mutex_);
    inFlight_.inGroups_.push_back(this);
    isListed_ = true;
}

InGroup::~InGroup()
{
    if (!isListed_) return;
    const std::lock_guard<std::mutex> lock(inFlight_.mutex_);
    inFlight_.leaveGroup(*this);
}

ConnectionInFlight::ConnectionInFlight(Socket socket, std::shared_ptr<InFlight> inFlight, unsigned begun,
                                       InGroup* exchange)
    : inFlight_(std::move(inFlight)),
      begun_(begun),
      exchange_(exchange),
      isIn_(inFlight_->enter(socket.fd(), begun, exchange))
{
    if (isIn_) socket_ = std::move(socket);
}

ConnectionInFlight::ConnectionInFlight(ConnectionInFlight&& other) noexcept
    : socket_(std::move(other.socket_)),
      inFlight_(std::move(other.inFlight_)),
      begun_(other.begun_),
      exchange_(other.exchange_),
      isIn_(std::exchange(other.isIn_, false))
{}

ConnectionInFlight& ConnectionInFlight::operator=(ConnectionInFlight&& other) noexcept
{
    close();
    socket_ = std::move(other.socket_);
    inFlight_ = std::move(other.inFlight_);
    begun_ = other.begun_;
    exchange_ = other.exchange_;
    isIn_ = std::exchange(other.isIn_, false);
    return *this;
}

ConnectionInFlight::~ConnectionInFlight()
{
    close();
}

void ConnectionInFlight::leave()
{
    if (std::exchange(isIn_, false)) inFlight_->leave(socket_.fd(), exchange_);
}

Socket ConnectionInFlight::releaseSocket()
{
    leave();
    return std::move(socket_);
}

void ConnectionInFlight::close()
{
    leave();
    socket_ = Socket();
}

}  // namespace Orvu
