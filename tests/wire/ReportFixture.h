#pragma once

#include <functional>
#include <memory>
#include <string>

#include "orvu/ExchangeReport.h"
#include "wire/ClientFixture.h"

namespace OrvuTests {

/// A client, and the report of what it asks a peer.
struct AReport : ARequestClient {
    AReport() { report.receivedText = &text; }

    std::unique_ptr<Orvu::Serializable> ask(Orvu::Serializable& request, const std::function<void(RawPeer&)>& act)
    {
        return send(&request, report, act);
    }

    Orvu::ExchangeReport report;
    std::string text = "of an exchange before";
};

}  // namespace OrvuTests
