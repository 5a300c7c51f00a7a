#pragma once

#include <string>
#include <vector>

namespace OrvuBench {

/// What every program of the benchmarks knows about a service.
struct Channel {
    std::string locator;
    std::string name;
    int transportStreamId = 0;
    int originalNetworkId = 0;
    int serviceId = 0;
};

/// The same 200 services for every program.
const std::vector<Channel>& channels();

/// The broadcast time that every program answers with.
const std::string& broadcastTime();

}  // namespace OrvuBench
