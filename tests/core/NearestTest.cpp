#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "messages/core/Nearest.h"

using namespace Orvu;

namespace {

const std::vector<std::string_view> kWords = {"schedule", "present", "following", "vol", "x", ""};

TEST(TheNearestWord, HasTheFewestLettersChanged)
{
    for (const char* word : {"schedules", "schedul", "shcedule", "SCHEDULE", "sxhedulex", "schedule"})
        EXPECT_EQ(nearest(word, kWords), "schedule") << word;
    EXPECT_EQ(nearest("vlo", kWords), "vol");
}

TEST(TheNearestWord, IsNoneWhenAllAreFar)
{
    for (const char* word : {"", "pos", "y", "scheme", "somethingElse"})
        EXPECT_EQ(nearest(word, kWords), "") << word;
    EXPECT_EQ(nearest(std::string(65, 's'), {std::string(65, 's')}), "");
}

TEST(TheNearestWord, IsTheFirstOfThoseThatAreEquallyNear)
{
    EXPECT_EQ(nearest("cat", {"car", "cap"}), "car");
}

}  // namespace
