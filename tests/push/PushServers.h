#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>

#include "push/Peers.h"
#include "support/LogCapture.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "transport/OrvuRestServerTcpSocket.h"
#include "transport/OrvuRestServerWebSocket.h"

namespace OrvuTests {

using Orvu::OrvuRestServerTcpSocket;
using Orvu::OrvuRestServerWebSocket;

/// What tells the two kinds of push server apart.
template <class Server>
struct Kind;

template <>
struct Kind<OrvuRestServerTcpSocket> {
    static constexpr char kName[] = "OrvuRestServerTcpSocket";
    static constexpr char kProtocol[] = "tcp";
    /// The first bytes of a push of more than 65535 bytes.
    static std::string head(std::size_t) { return ""; }
};

template <>
struct Kind<OrvuRestServerWebSocket> {
    static constexpr char kName[] = "OrvuRestServerWebSocket";
    static constexpr char kProtocol[] = "websocket";
    static std::string head(std::size_t size)
    {
        std::string head("\x82\x7f\0\0\0\0", 6);
        for (int shift = 24; shift >= 0; shift -= 8)
            head += static_cast<char>(size >> shift);
        return head;
    }
};

/// For the tests of what both have in common.
using BothKinds = testing::Types<OrvuRestServerTcpSocket, OrvuRestServerWebSocket>;
struct NameOfKind {
    template <class Server>
    static std::string GetName(int)
    {
        return Kind<Server>::kProtocol;
    }
};

inline bool push(Orvu::OrvuRestSimpleServer& server, const std::string& bytes)
{
    auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));  // only read from
    return server.send(data, static_cast<unsigned>(bytes.size()));
}

/// A message that is longer than what the system keeps for a client that does not read.
const std::string& tooMuch();

/// A push server on a leased port, started, with its log captured. One test's.
template <class Server>
class Running {
public:
    Running() : server_(std::make_unique<Server>())
    {
        if (!server_->configure(port()) || !server_->start()) throw std::runtime_error("the server does not start");
    }

    int port() const { return lease_.port(); }
    Server& server() { return *server_; }
    bool push(const std::string& bytes) { return OrvuTests::push(*server_, bytes); }
    void destroy() { server_.reset(); }

    /// A client that gets what is pushed from now on.
    RawPeer attach(RawPeer (*connect)(int port) = RawPeer::connectedTo)
    {
        RawPeer peer = connect(port());
        attach(peer);
        return peer;
    }
    /// Waits until a client that connected is one.
    void attach(RawPeer& peer);

    /// How many clients a TCP server has.
    int listed()
    {
        static const std::string kEmpty = "OrvuRestServerTcpSocket::send: ERROR data is empty!";
        const int before = log.count(kEmpty);
        push("");
        return log.count(kEmpty) - before;
    }

    LogCapture log;

private:
    PortLease lease_;
    std::unique_ptr<Server> server_;
    int attached_ = 0;
};

template <>
inline void Running<OrvuRestServerTcpSocket>::attach(RawPeer&)
{
    ++attached_;
    if (!eventually([this] { return listed() >= attached_; })) throw std::runtime_error("the server lists no client");
    log.clear();
}

template <>
inline void Running<OrvuRestServerWebSocket>::attach(RawPeer& peer)
{
    if (!shakesHands(peer)) throw std::runtime_error("the server shakes no hands");
}

using RunningTcp = Running<OrvuRestServerTcpSocket>;
using RunningWebSocket = Running<OrvuRestServerWebSocket>;

}  // namespace OrvuTests
