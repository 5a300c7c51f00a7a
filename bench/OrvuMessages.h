#pragma once

#include <memory>

#include "bench/Channels.h"
#include "orvu/ClientApplications.h"
#include "orvu/EventInformation.h"
#include "orvu/Ncl.h"
#include "orvu/PlatformCapabilities.h"
#include "orvu/Services.h"

namespace OrvuBench {

/// \file
/// The messages of the benchmarks as an application hands them to the library, with every field that travels.

/// The service of every list.
std::unique_ptr<Orvu::Service> orvuService(const Channel& channel);

/// The event that starts that many half hours after the first one, with all six descriptors.
std::unique_ptr<Orvu::EventInfo> orvuEvent(int halfHours);
/// A schedule of `count` events.
std::unique_ptr<Orvu::EventInfoList> orvuEvents(int count);
/// With four layers.
std::unique_ptr<Orvu::PlatformCapabilities> orvuCapabilities();
/// Six nodes deep, four wide: 1365 nodes.
std::unique_ptr<Orvu::NCLNode> orvuNodes();
/// 200 whole services with two tokens each.
std::unique_ptr<Orvu::ServiceBindTokensList> orvuTokens();

}  // namespace OrvuBench
