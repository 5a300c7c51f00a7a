#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "orvu/OrvuRestInterface.h"
#include "push/Peers.h"
#include "support/LogCapture.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "wire/Receiver.h"
#include "wire/Sockets.h"

namespace OrvuTests {

inline const std::string kCreate = "OrvuRestInterface::createServer: ";
inline const std::string kTrying = kCreate + "Trying";
inline const std::string kNotConfigured = kCreate + "cannot configure the server";

using Info = std::unique_ptr<Orvu::SocketServerInfo>;

struct TheFacade : testing::Test {
    ~TheFacade() override { Orvu::OrvuRestInterface::destroyInstance(); }

    static Orvu::OrvuRestInterface& facade() { return *Orvu::OrvuRestInterface::getInstance(); }
    static bool send(int handler, const std::string& bytes)
    {
        return facade().sendMessage(handler, reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data())),
                                    static_cast<unsigned>(bytes.size()));
    }

    /// A server on a port of its own.
    Info create(const std::string& protocol)
    {
        leases.push_back(std::make_unique<PortLease>());
        facade().setSocketsPortsRange(leases.back()->port(), leases.back()->port());
        return Info(facade().createServer(protocol));
    }
    int tried() { return log.count(kTrying); }

    LogCapture log;
    std::vector<std::unique_ptr<PortLease>> leases;
};

}  // namespace OrvuTests
