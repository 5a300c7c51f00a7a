#include "bench/CJsonMessages.h"

#include "bench/CJsonFields.h"

namespace OrvuBench {

Channel readChannel(const cJSON* tree)
{
    Channel channel;
    read(tree, "serviceContextId", channel.locator);
    read(tree, "serviceName", channel.name);
    read(tree, "transportStreamId", channel.transportStreamId);
    read(tree, "originalNetworkId", channel.originalNetworkId);
    read(tree, "serviceId", channel.serviceId);
    return channel;
}

cJSON* channelTree(const Channel& channel)
{
    cJSON* const tree = cJSON_CreateObject();
    cJSON_AddStringToObject(tree, "serviceContextId", channel.locator.c_str());
    cJSON_AddStringToObject(tree, "serviceName", channel.name.c_str());
    cJSON_AddNumberToObject(tree, "transportStreamId", channel.transportStreamId);
    cJSON_AddNumberToObject(tree, "originalNetworkId", channel.originalNetworkId);
    cJSON_AddNumberToObject(tree, "serviceId", channel.serviceId);
    return tree;
}

std::string typeOf(const cJSON* tree)
{
    std::string type;
    read(tree, "HEADER", type);
    return type;
}

std::optional<std::string> readTime(const cJSON* tree)
{
    const cJSON* const time = cJSON_GetObjectItem(tree, "time");
    if (!cJSON_IsString(time)) return std::nullopt;
    return time->valuestring;
}

Text writeTime(const std::string& time)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "serviceTime");
    cJSON_AddStringToObject(tree.get(), "time", time.c_str());
    return Text(cJSON_Print(tree.get()));
}

std::optional<std::vector<Channel>> readList(const cJSON* tree)
{
    const cJSON* const list = cJSON_GetObjectItem(tree, "serviceList");
    if (!list) return std::nullopt;
    std::vector<Channel> channels;
    channels.reserve(static_cast<std::size_t>(cJSON_GetArraySize(list)));
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, list) channels.push_back(readChannel(item));
    return channels;
}

Text writeList(const std::vector<Channel>& channels)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "serviceList");
    cJSON* const list = cJSON_AddArrayToObject(tree.get(), "serviceList");
    for (const Channel& channel : channels)
        cJSON_AddItemToArray(list, channelTree(channel));
    return Text(cJSON_Print(tree.get()));
}

}  // namespace OrvuBench
