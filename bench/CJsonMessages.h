#pragma once

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "bench/Channels.h"
#include "messages/core/CJsonBridge.h"

namespace OrvuBench {

/// \file
/// The messages of the benchmarks with cJSON alone: the text is parsed and the tree walked into a struct, and the other
/// way round.

using Tree = Orvu::JsonTree;

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, FreeText>;

/// The type that "HEADER" names; "" without one.
std::string typeOf(const cJSON* tree);

std::optional<std::string> readTime(const cJSON* tree);
Text writeTime(const std::string& time);

/// One service, from its own tree and as one, which the caller deletes.
Channel readChannel(const cJSON* tree);
cJSON* channelTree(const Channel& channel);

std::optional<std::vector<Channel>> readList(const cJSON* tree);
Text writeList(const std::vector<Channel>& channels);

}  // namespace OrvuBench
