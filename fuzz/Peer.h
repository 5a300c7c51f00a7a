#pragma once

#include <cstdint>
#include <string>

#include "transport/Socket.h"

namespace OrvuFuzz {

/// The bytes that a peer sends: the input as it is or, where it begins with "{", one whole frame that holds it.
std::string streamOf(const std::uint8_t* bytes, std::size_t size);

/// The length that the stream announces, and the text that follows, up to that length.
struct Announced {
    bool isThere = false;
    std::uint32_t length = 0;
    std::string text;
};
Announced announcedIn(const std::string& stream);

/// The peer of a connection, in this thread: it has sent its stream and closed its sending side.
class Peer {
public:
    explicit Peer(const std::string& stream);

    /// Our end of the connection. Call it once.
    Orvu::Socket takeOtherEnd() { return std::move(other_); }
    /// What the peer received; call it when the other side has sent everything.
    std::string received();

private:
    Orvu::Socket own_;
    Orvu::Socket other_;
};

/// While it lives, each `recv` of the library gives few bytes or many, as a row of random numbers says that begins with
/// the bytes of `stream`: where it is cut follows from the input alone.
class CutReads {
public:
    explicit CutReads(const std::string& stream);
    ~CutReads();
    CutReads(const CutReads&) = delete;
    CutReads& operator=(const CutReads&) = delete;
};

}  // namespace OrvuFuzz
