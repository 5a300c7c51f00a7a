#pragma once

#include "bench/CJsonMessages.h"

namespace OrvuBench {

struct NodeEvent {
    bool prepared = false;
    int state = 0;
    int occurrences = 0;
};

/// A node of a document and those in it, with cJSON alone. Words are kept as their places in the lists of words.
struct Node {
    std::string id;
    int type = 0;
    std::string appid;
    std::string documentId;
    std::string mimeType;
    NodeEvent presentationEvent;
    NodeEvent preparationEvent;
    std::vector<Node> interfaces;
};

void readFields(const cJSON* tree, Node& node);
/// Without blanks, as the library writes a node.
Text print(const Node& node);

}  // namespace OrvuBench
