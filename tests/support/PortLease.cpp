#include "support/PortLease.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvuTests {
namespace {

constexpr int kFirstPort = 20000;
constexpr int kPorts = 10000;

/// Whether the system gives the port away: not while another socket listens there, or on any address.
bool canBind(int port)
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    const bool free = bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return free;
}

int lockedFile(int port)
{
    const std::string folder = "/tmp/orvu-port-leases";
    mkdir(folder.c_str(), 0777);
    const int fd = open((folder + "/" + std::to_string(port)).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd >= 0 && flock(fd, LOCK_EX | LOCK_NB) == 0) return fd;
    if (fd >= 0) close(fd);
    return -1;
}

}  // namespace

PortLease::PortLease()
{
    const int start = getpid() * 37;  // processes that start together look in different places first
    for (int i = 0; i < kPorts; ++i) {
        port_ = kFirstPort + (start + i) % kPorts;
        lock_ = lockedFile(port_);
        if (lock_ < 0) continue;
        if (canBind(port_)) return;
        close(lock_);
    }
    throw std::runtime_error("no free port");
}

PortLease::~PortLease()
{
    close(lock_);
}

PortRangeLease::PortRangeLease(int count)
{
    while (leases_.size() < static_cast<std::size_t>(count)) {
        auto next = std::make_unique<PortLease>();
        if (!leases_.empty() && next->port() != leases_.back()->port() + 1) {
            for (auto& lease : leases_)
                others_.push_back(std::move(lease));
            leases_.clear();
        }
        leases_.push_back(std::move(next));
    }
}

}  // namespace OrvuTests
