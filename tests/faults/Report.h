#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace OrvuTests {

/// Reports how many fault points the running test has tried; there must be some.
inline void report(const std::string& what, int tried)
{
    EXPECT_GT(tried, 0);
    std::printf("%s: %d fault points\n", what.c_str(), tried);
    testing::Test::RecordProperty("fault_points", tried);
}

}  // namespace OrvuTests
