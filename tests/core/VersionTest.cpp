#include <gtest/gtest.h>
#include <string>

#include "orvu/Version.h"

namespace {

TEST(TheHeaders, HaveTheVersionOfTheLibrary)
{
    const int parts[] = {ORVU_VERSION_MAJOR, ORVU_VERSION_MINOR, ORVU_VERSION_PATCH};
    EXPECT_EQ(std::to_string(parts[0]) + "." + std::to_string(parts[1]) + "." + std::to_string(parts[2]),
              ORVU_PROJECT_VERSION);
}

}  // namespace
