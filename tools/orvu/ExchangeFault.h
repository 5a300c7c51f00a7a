#pragma once

#include <string>

#include "orvu/ExchangeReport.h"

namespace OrvuTool {

/// Why an exchange with `host`:`port` did not come to an answer, in one line; empty when it did. The report needs a
/// `receivedText`.
std::string faultOfExchange(const Orvu::ExchangeReport& report, const std::string& host, int port);

/// Whether the request never got as far as a connection.
bool hasNoServer(const Orvu::ExchangeReport& report);

}  // namespace OrvuTool
