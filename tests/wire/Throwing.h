#pragma once

#include <stdexcept>

#include "orvu/Results.h"

namespace OrvuTests {

/// A message of the application's that throws when it is to be written.
class Throwing : public Orvu::SuccessResponse {
public:
    char* serialize() override { throw std::runtime_error("not today"); }
};

}  // namespace OrvuTests
