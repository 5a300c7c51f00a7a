#pragma once

#include <string>

#include "orvu/ExchangeReport.h"

namespace OrvuTool {

/// Why an exchange with `host`:`port` got no answer, in one line; empty when it got one. The report needs a
/// `receivedText`.
std::string faultOfExchange(const Orvu::ExchangeReport& report, const std::string& host, int port);

/// Whether the request never got a connection.
bool hasNoServer(const Orvu::ExchangeReport& report);

}  // namespace OrvuTool
