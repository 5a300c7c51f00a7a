#include "wire/Sockets.h"

#include <algorithm>
#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <pthread.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include "support/RawPeer.h"

namespace OrvuTests {
namespace {

constexpr std::size_t kMoreThanThereIs = static_cast<std::size_t>(7) << (sizeof(void*) == 8 ? 44 : 29);

bool isSocket(int fd)
{
    int type = 0;
    socklen_t size = sizeof type;
    return getsockopt(fd, SOL_SOCKET, SO_TYPE, &type, &size) == 0;
}

bool isListening(int fd)
{
    int on = 0;
    socklen_t size = sizeof on;
    return getsockopt(fd, SOL_SOCKET, SO_ACCEPTCONN, &on, &size) == 0 && on != 0;
}

int portOf(int fd)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

std::size_t statusValue(const std::string& key)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::size_t kilobytes = 0;
        if (word == key && status >> kilobytes) return kilobytes * 1024;
    }
    throw std::runtime_error("no " + key);
}

std::size_t defaultStack()
{
    pthread_attr_t attributes;
    std::size_t size = 0;
    pthread_getattr_default_np(&attributes);
    pthread_attr_getstacksize(&attributes, &size);
    pthread_attr_destroy(&attributes);
    return size;
}

void setDefaultStack(std::size_t size)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (pthread_attr_setstacksize(&attributes, size) != 0 || pthread_setattr_default_np(&attributes) != 0)
        throw std::runtime_error("no such stack");
    pthread_attr_destroy(&attributes);
}

}  // namespace

std::vector<int> openDescriptors()
{
    std::vector<int> found;
    DIR* const folder = opendir("/proc/self/fd");
    while (const dirent* const entry = readdir(folder))
        if (entry->d_name[0] != '.') found.push_back(std::stoi(entry->d_name));
    found.erase(std::find(found.begin(), found.end(), dirfd(folder)));
    closedir(folder);
    return found;
}

std::vector<int> openSockets()
{
    std::vector<int> found = openDescriptors();
    found.erase(std::remove_if(found.begin(), found.end(), [](int fd) { return !isSocket(fd); }), found.end());
    return found;
}

int listenerOn(int port)
{
    for (const int fd : openSockets())
        if (isListening(fd) && portOf(fd) == port) return fd;
    return -1;
}

bool canConnect(int port)
{
    try {
        RawPeer::connectedTo(port);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

bool canListenOn(int port)
{
    return RawPeer(boundSocket(port, true)).fd() >= 0;
}

std::string listenAddressOf(int port)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(listenerOn(port), reinterpret_cast<sockaddr*>(&address), &size) != 0) return "";
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
}

unsigned backlogOf(int listener)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    if (getsockopt(listener, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) throw std::runtime_error("no TCP socket");
    return info.tcpi_sacked;  // of a listener
}

unsigned longestBacklog()
{
    unsigned longest = 0;
    std::ifstream("/proc/sys/net/core/somaxconn") >> longest;
    return std::min<unsigned>(SOMAXCONN, longest);
}

int connectionsBeingOpened(int port)
{
    std::ostringstream remote;
    remote << std::uppercase << std::hex << port << " 02 ";  // the state SYN_SENT
    std::ifstream connections("/proc/self/net/tcp");
    int count = 0;
    for (std::string line; std::getline(connections, line);)
        if (line.find(":" + remote.str()) != std::string::npos) ++count;
    return count;
}

std::size_t residentMemory()
{
    return statusValue("VmRSS:");
}

std::size_t peakMemory()
{
    return statusValue("VmHWM:");
}

void resetPeakMemory()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

NoDescriptorsLeft::NoDescriptorsLeft()
{
    getrlimit(RLIMIT_NOFILE, &before_);
    const std::vector<int> open = openDescriptors();
    const rlimit tight{static_cast<rlim_t>(*std::max_element(open.begin(), open.end()) + 1), before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &tight);
    for (int fd; (fd = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) >= 0;)
        taken_.push_back(fd);
}

NoDescriptorsLeft::~NoDescriptorsLeft()
{
    for (const int fd : taken_)
        close(fd);
    setrlimit(RLIMIT_NOFILE, &before_);
}

NoThreadsLeft::NoThreadsLeft() : before_(defaultStack())
{
    setDefaultStack(kMoreThanThereIs);
}

NoThreadsLeft::~NoThreadsLeft()
{
    setDefaultStack(before_);
}

}  // namespace OrvuTests
