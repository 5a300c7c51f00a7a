#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "push/PushServers.h"
#include "transport/OrvuRestServerSocket.h"

/// \file
/// For the tests of what all servers have in common: the one for requests and the two for pushes.

namespace OrvuTests {

using Orvu::OrvuRestServerSocket;

template <>
struct Kind<OrvuRestServerSocket> {
    static constexpr char kName[] = "OrvuRestServerSocket";
    static constexpr char kProtocol[] = "requests";
};

using AllKinds = testing::Types<OrvuRestServerSocket, OrvuRestServerTcpSocket, OrvuRestServerWebSocket>;

template <class Server>
std::string logLineOf(const std::string& text)
{
    return std::string(Kind<Server>::kName) + "::" + text;
}

/// A server that lives as long as a test, or until it is destroyed.
template <class Server>
class Made {
public:
    Server& server() { return *server_; }
    void destroy() { server_.reset(); }

private:
    std::unique_ptr<Server> server_ = std::make_unique<Server>();
};

/// There is one for the process.
template <>
class Made<OrvuRestServerSocket> {
public:
    ~Made() { destroy(); }
    OrvuRestServerSocket& server() { return *OrvuRestServerSocket::getInstance(); }
    void destroy() { OrvuRestServerSocket::destroyInstance(); }
};

}  // namespace OrvuTests
