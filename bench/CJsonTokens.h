#pragma once

#include "bench/CJsonMessages.h"

namespace OrvuBench {

struct BoundService {
    Channel service;
    std::vector<std::string> tokens;
};

/// The tokens granted, service by service, with cJSON alone.
struct BoundServices {
    std::vector<BoundService> services;
};

/// As the library reads: neither empty tokens nor those that the service has already.
void readFields(const cJSON* tree, BoundServices& list);
Text print(const BoundServices& list);

}  // namespace OrvuBench
