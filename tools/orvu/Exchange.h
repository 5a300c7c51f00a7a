#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "orvu/Serializable.h"

namespace OrvuTool {

class Output;

/// Which server to ask, and how to show the answer.
struct ExchangeOptions {
    std::string host = "127.0.0.1";
    int port = 7575;
    bool raw = false;
    bool wire = false;
};

void addExchangeOptions(CLI::App& command, ExchangeOptions& options);

/// Sends `request` and shows the answer; says on standard error why there is none, and what was lost in reading it.
/// Returns the exit code.
int exchange(Orvu::Serializable& request, const ExchangeOptions& options, Output& output);

/// What `ask` and `send` say of their exit codes.
extern const char* const kExchangeExitCodes;

}  // namespace OrvuTool
