#include <gtest/gtest.h>

#include "tools/orvu/JsonTrees.h"

namespace OrvuTests {
namespace {

TEST(ATextThatIsNotJson, SaysWhereItStopsBeingIt)
{
    EXPECT_EQ(OrvuTool::parseText("").fault, "is empty");
    EXPECT_EQ(OrvuTool::parseText("{\n  \"a\": [],\n  \"b\":\n").fault, "ends inside an object (line 3, column 7)");
    EXPECT_EQ(OrvuTool::parseText("{\n  \"é\": yes}").fault, "is not JSON from here on: \"yes}\" (line 2, column 8)");
}

}  // namespace
}  // namespace OrvuTests
