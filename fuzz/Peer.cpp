#include "fuzz/Peer.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <random>
#include <sys/socket.h>

#include "fuzz/Fuzz.h"

using Orvu::Socket;

namespace {

std::optional<std::minstd_rand> cuts;

/// Short pieces as often as long ones.
std::size_t nextPiece()
{
    const std::size_t longest = std::size_t{1} << ((*cuts)() % 12);
    return 1 + (*cuts)() % longest;
}

}  // namespace

extern "C" {
ssize_t __real_recv(int fd, void* to, std::size_t size, int flags);

// The linker redirects the library's reads here.
ssize_t __wrap_recv(int fd, void* to, std::size_t size, int flags)
{
    return __real_recv(fd, to, cuts ? std::min(size, nextPiece()) : size, flags);
}
}

namespace OrvuFuzz {

std::string streamOf(const std::uint8_t* bytes, std::size_t size)
{
    const std::string input = textOf(bytes, size);
    if (input.empty() || input[0] != '{') return input;
    const std::uint32_t length = static_cast<std::uint32_t>(size) + 1;
    return std::string(reinterpret_cast<const char*>(&length), sizeof length) + input;
}

Announced announcedIn(const std::string& stream)
{
    Announced announced;
    announced.isThere = stream.size() >= sizeof announced.length;
    if (!announced.isThere) return announced;
    std::memcpy(&announced.length, stream.data(), sizeof announced.length);
    announced.text = stream.substr(sizeof announced.length, std::max(announced.length, 1u) - 1);
    return announced;
}

Peer::Peer(const std::string& stream)
{
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0, "the system gives a pair of sockets");
    own_ = Socket(ends[0]);
    other_ = Socket(ends[1]);
    require(send(ends[0], stream.data(), stream.size(), MSG_DONTWAIT) == static_cast<ssize_t>(stream.size()),
            "an input fits into the buffer of a socket");
    ::shutdown(ends[0], SHUT_WR);
}

std::string Peer::received()
{
    std::string all;
    char bytes[4096];
    for (ssize_t got; (got = __real_recv(own_.fd(), bytes, sizeof bytes, MSG_DONTWAIT)) > 0;)
        all.append(bytes, static_cast<std::size_t>(got));
    return all;
}

CutReads::CutReads(const std::string& stream)
{
    std::seed_seq seed(stream.begin(), stream.end());
    cuts.emplace(seed);
}

CutReads::~CutReads()
{
    cuts.reset();
}

}  // namespace OrvuFuzz
