#pragma once

#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <thread>

#include "orvu/ExchangeReport.h"
#include "orvu/OrvuRestInterface.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"

namespace OrvuTests {

/// The request client, configured for a peer that does what the test says.
struct ARequestClient : testing::Test {
    ARequestClient()
    {
        if (!client().configureClient("127.0.0.1", peer.port())) throw std::runtime_error("cannot reach the peer");
        peer.accept();  // the connection that tested the peer
        log.clear();
    }
    ~ARequestClient() override { Orvu::OrvuRestInterface::destroyInstance(); }

    static Orvu::OrvuRestInterface& client() { return *Orvu::OrvuRestInterface::getInstance(); }

    /// Sends `request` to a peer that does `act` with the connection.
    std::unique_ptr<Orvu::Serializable> send(Orvu::Serializable* request, const std::function<void(RawPeer&)>& act)
    {
        return whilePeerActs(act, [&] { return client().sendRequest(request); });
    }
    /// The same, with a report.
    std::unique_ptr<Orvu::Serializable> send(Orvu::Serializable* request, Orvu::ExchangeReport& report,
                                             const std::function<void(RawPeer&)>& act)
    {
        return whilePeerActs(act, [&] { return client().sendRequest(request, report); });
    }

    /// What `call` returns while a peer does `act` with the connection that the call opens.
    std::unique_ptr<Orvu::Serializable> whilePeerActs(const std::function<void(RawPeer&)>& act,
                                                      const std::function<Orvu::Serializable*()>& call)
    {
        std::thread acting([&] {
            RawPeer connection = peer.accept();
            act(connection);
        });
        std::unique_ptr<Orvu::Serializable> answer(call());
        acting.join();
        return answer;
    }

    /// The type of the answer when the peer reads the request and sends `bytes`.
    Orvu::DataType typeAnswering(Orvu::Serializable& request, const std::string& bytes)
    {
        return send(&request,
                    [&](RawPeer& connection) {
                        connection.readFrame();
                        connection.send(bytes);
                    })
            ->getDataType();
    }

    LogCapture log;
    RawListener peer;
};

}  // namespace OrvuTests
