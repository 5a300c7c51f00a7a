#include "bench/CJsonNodes.h"

#include "bench/CJsonFields.h"

namespace OrvuBench {
namespace {

constexpr std::array kTypes = {"unknown", "media", "context", "switch", "area", "property", "port"};
constexpr std::array kStates = {"unknown",
                                "idle",
                                "prepare",
                                "start",
                                "pause",
                                "resume",
                                "stop",
                                "unload",
                                "select",
                                "set",
                                "abort",
                                "startPreparation",
                                "stopPreparation",
                                "abortPreparation",
                                "pausePreparation",
                                "resumePreparation",
                                "preparing",
                                "prepared",
                                "playing",
                                "paused",
                                "stopped",
                                "free",
                                "occurring",
                                "sleeping"};

}  // namespace

void readFields(const cJSON* tree, NodeEvent& event)
{
    read(tree, "prepared", event.prepared);
    readWord(tree, "state", event.state, kStates);
    read(tree, "occurrences", event.occurrences);
}

void readFields(const cJSON* tree, Node& node)
{
    read(tree, "id", node.id);
    readWord(tree, "type", node.type, kTypes);
    read(tree, "appid", node.appid);
    read(tree, "documentId", node.documentId);
    read(tree, "mimeType", node.mimeType);
    readStruct(tree, "presentationEvent", node.presentationEvent);
    readStruct(tree, "preparationEvent", node.preparationEvent);
    readStructs(tree, "interfaces", node.interfaces);
}

void addFields(cJSON* tree, const NodeEvent& event)
{
    add(tree, "prepared", event.prepared);
    addWord(tree, "state", event.state, kStates);
    add(tree, "occurrences", event.occurrences);
}

void addFields(cJSON* tree, const Node& node)
{
    add(tree, "id", node.id);
    addWord(tree, "type", node.type, kTypes);
    add(tree, "appid", node.appid);
    add(tree, "documentId", node.documentId);
    add(tree, "mimeType", node.mimeType);
    addStruct(tree, "presentationEvent", node.presentationEvent);
    addStruct(tree, "preparationEvent", node.preparationEvent);
    if (!node.interfaces.empty()) addStructs(tree, "interfaces", node.interfaces);
}

Text print(const Node& node)
{
    const Tree tree(cJSON_CreateObject());
    cJSON_AddStringToObject(tree.get(), "HEADER", "nclNode");
    addFields(tree.get(), node);
    return Text(cJSON_PrintUnformatted(tree.get()));
}

}  // namespace OrvuBench
