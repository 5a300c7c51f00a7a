#include "bench/CJsonTokens.h"

#include "bench/CJsonFields.h"

namespace OrvuBench {
namespace {

void readToken(const cJSON* item, std::vector<std::string>& tokens)
{
    if (!cJSON_IsString(item) || !*item->valuestring) return;
    if (std::find(tokens.begin(), tokens.end(), item->valuestring) == tokens.end())
        tokens.emplace_back(item->valuestring);
}

}  // namespace

void readFields(const cJSON* tree, BoundService& bound)
{
    if (const cJSON* const service = cJSON_GetObjectItem(tree, "service")) bound.service = readChannel(service);
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, cJSON_GetObjectItem(tree, "bindTokens")) readToken(item, bound.tokens);
}

void readFields(const cJSON* tree, BoundServices& list)
{
    readStructs(tree, "boundServices", list.services);
}

void addFields(cJSON* tree, const BoundService& bound)
{
    cJSON_AddStringToObject(tree, "HEADER", "serviceBindTokens");
    cJSON_AddItemToObject(tree, "service", channelTree(bound.service));
    cJSON* const tokens = cJSON_AddArrayToObject(tree, "bindTokens");
    for (const std::string& token : bound.tokens)
        cJSON_AddItemToArray(tokens, cJSON_CreateString(token.c_str()));
}

Text print(const BoundServices& list)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "serviceBindTokensList");
    addStructs(tree.get(), "boundServices", list.services);
    return Text(cJSON_Print(tree.get()));
}

}  // namespace OrvuBench
