#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace OrvuTool {

/// What is wrong with the first argument that `app` did not understand, with the nearest word that it does; empty when
/// it understood all.
std::string faultOfUnknownArgument(const CLI::App& app);

}  // namespace OrvuTool
