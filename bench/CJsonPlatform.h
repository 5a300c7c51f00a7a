#pragma once

#include "bench/CJsonMessages.h"

namespace OrvuBench {

struct Size {
    int w = -1;
    int h = -1;
};

struct Layer {
    int type = 0;
    Size bounds;
};

struct Interface {
    int type = 0;
    bool active = false;
};

/// What the receiver can do, with cJSON alone. Words are kept as their places in the lists of words.
struct Capabilities {
    std::string manufacturer;
    std::string model;
    std::string friendlyName;
    Size physicalScreenSize;
    std::vector<Layer> displayLayers;
    int videoRefreshRate = 0;
    std::vector<int> colorimetry;
    std::vector<int> dynamicRange;
    std::vector<int> inputDevices;
    std::vector<Interface> networkInterfaces;
};

void readFields(const cJSON* tree, Capabilities& can);
Text print(const Capabilities& can);

}  // namespace OrvuBench
