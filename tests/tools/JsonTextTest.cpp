#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "tools/orvu/JsonText.h"

namespace OrvuTests {
namespace {

struct NotJson {
    const char* text;
    const char* fault;
};

void PrintTo(const NotJson& given, std::ostream* out)
{
    *out << '"' << given.text << '"';
}

class ATextThatIsNotJson : public testing::TestWithParam<NotJson> {};

TEST_P(ATextThatIsNotJson, SaysWhereItStopsBeingIt)
{
    const OrvuTool::ParsedText parsed = OrvuTool::parseText(GetParam().text);
    EXPECT_EQ(parsed.tree, nullptr);
    EXPECT_EQ(parsed.fault, GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(JsonText, ATextThatIsNotJson,
                         testing::Values(NotJson{"", "is empty"}, NotJson{" \r\n\t", "is empty"},
                                         NotJson{"{", "ends inside an object, line 1, column 2"},
                                         NotJson{"{\n\n", "ends inside an object, line 1, column 2"},
                                         NotJson{"{\n  \"a\": [],\n  \"b\":\n",
                                                 "ends inside an object, line 3, column 7"},
                                         NotJson{"{\"a\": [1, {}", "ends inside a list, line 1, column 13"},
                                         NotJson{"{\"a\": [1, {\"b\"", "ends inside an object, line 1, column 15"},
                                         NotJson{"{\"a\": \"[{", "ends inside a string, line 1, column 10"},
                                         NotJson{"{\"a\": \"b\\\"}", "ends inside a string, line 1, column 12"},
                                         NotJson{"{\"é", "ends inside a string, line 1, column 4"},
                                         NotJson{"nonsense", "is not JSON from line 1, column 1 on"},
                                         NotJson{"\n\n  nonsense", "is not JSON from line 3, column 3 on"},
                                         NotJson{"{\n  \"é\": yes}", "is not JSON from line 2, column 8 on"},
                                         NotJson{"{\"a\": 1]", "is not JSON from line 1, column 8 on"},
                                         NotJson{"{\"a\" 1}", "is not JSON from line 1, column 6 on"},
                                         NotJson{"[\"a\", \"\\q\"]", "is not JSON from line 1, column 8 on"},
                                         NotJson{"[1,]", "is not JSON from line 1, column 4 on"}));

}  // namespace
}  // namespace OrvuTests
