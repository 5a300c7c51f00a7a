#include "bench/Channels.h"

namespace OrvuBench {
namespace {

constexpr int kCount = 200;
constexpr int kFirstNetwork = 1840;
constexpr int kServicesOfANetwork = 4;
constexpr const char* kNames[kServicesOfANetwork] = {"TV Brasil Central HD", "Canal Notícias", "TV Educação e Cultura",
                                                     "Móvel"};

Channel channel(int index)
{
    const int network = kFirstNetwork + index / kServicesOfANetwork;
    const int service = network * 32 + index % kServicesOfANetwork;
    const std::string prefix = std::to_string(network) + "." + std::to_string(network) + ".";
    return {prefix + std::to_string(service), kNames[index % kServicesOfANetwork], network, network, service};
}

}  // namespace

const std::vector<Channel>& channels()
{
    static const std::vector<Channel> kChannels = [] {
        std::vector<Channel> all;
        for (int i = 0; i < kCount; ++i)
            all.push_back(channel(i));
        return all;
    }();
    return kChannels;
}

const std::string& broadcastTime()
{
    static const std::string kTime = "2031-05-17T20:30:00-03:00";
    return kTime;
}

}  // namespace OrvuBench
