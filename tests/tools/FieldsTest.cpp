#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "orvu/Explanation.h"
#include "orvu/Orvu.h"
#include "support/Messages.h"
#include "tools/orvu/Fields.h"

namespace OrvuTests {
namespace {

using Orvu::DataType;

struct Given {
    DataType type;
    std::vector<std::string> arguments;
    std::string result;  ///< The text, or the fault.
};

void PrintTo(const Given& given, std::ostream* out)
{
    *out << given.result;
}

OrvuTool::FieldsText made(const Given& given)
{
    return OrvuTool::textOfFields("name", Orvu::keysOf(given.type), given.arguments);
}

class FieldsOfACommandLine : public testing::TestWithParam<Given> {};

TEST_P(FieldsOfACommandLine, CountAsWhatTheirKeysHold)
{
    const OrvuTool::FieldsText text = made(GetParam());
    ASSERT_EQ(text.fault, "");
    EXPECT_EQ(taken(cJSON_PrintUnformatted(text.tree.get())), R"({"HEADER":"name",)" + GetParam().result + "}");
}

INSTANTIATE_TEST_SUITE_P(
    Made, FieldsOfACommandLine,
    testing::Values(
        Given{Orvu::DataTypeServiceTime, {"time=20:30=x"}, R"("time":"20:30=x")"},
        Given{Orvu::DataTypeServiceTime, {"time="}, R"("time":"")"},
        Given{Orvu::DataTypeServiceComponentTag, {"componentTag=-5"}, R"("componentTag":-5)"},
        Given{
            Orvu::DataTypeConfirmationScreen, {"displayName=5", "dispose=true"}, R"("displayName":"5","dispose":true)"},
        Given{Orvu::DataTypeServiceCompTagAction,
              {"action=start", "pos.x=1", "pos.w=50%"},
              R"("action":"start","pos":{"x":1,"w":"50%"})"},
        Given{Orvu::DataTypeKeyset,
              {"keyset=numeric_keys", "releaseKeyset=false", "keyset=cursor_keys"},
              R"("keyset":["numeric_keys","cursor_keys"],"releaseKeyset":false)"},
        Given{Orvu::DataTypeServiceList,
              {"serviceList[0].serviceId=1", "serviceList[1].serviceName=B", "serviceList[0].serviceName=A"},
              R"("serviceList":[{"serviceId":1,"serviceName":"A"},{"serviceName":"B"}])"},
        Given{Orvu::DataTypeGingaEditCommand, {"elementId=x"}, R"("elementId":"x")"},
        Given{Orvu::DataTypeGingaEditCommand, {"elementId.alias=x"}, R"("elementId":{"alias":"x"})"}));

class AWrongField : public testing::TestWithParam<Given> {};

TEST_P(AWrongField, IsNamedWithTheReason)
{
    const OrvuTool::FieldsText text = made(GetParam());
    EXPECT_FALSE(text.tree);
    EXPECT_EQ(text.fault, GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Given, AWrongField,
    testing::Values(
        Given{Orvu::DataTypeServiceTime, {"time"}, "time: a field is given as key=value"},
        Given{Orvu::DataTypeServiceTime, {"tme=1"}, "tme: there is no key \"tme\"; did you mean \"time\"?"},
        Given{Orvu::DataTypeServiceTime, {"=1"}, ": there is no key \"\""},
        Given{Orvu::DataTypeServiceTime, {"time=1", "time=2"}, "time: is given twice"},
        Given{Orvu::DataTypeServiceTime, {"time.hour=1"}, "time.hour: \"time\" holds no keys: its kind is text"},
        Given{Orvu::DataTypeServiceComponentTag, {"componentTag=1x"}, "componentTag: \"1x\" is not a 32-bit number"},
        Given{Orvu::DataTypeServiceComponentTag,
              {"componentTag=2147483648"},
              "componentTag: \"2147483648\" is not a 32-bit number"},
        Given{Orvu::DataTypeConfirmationScreen, {"dispose=yes"}, "dispose: \"yes\" is neither true nor false"},
        Given{Orvu::DataTypeServiceCompTagAction,
              {"action=strat"},
              "action: \"strat\" is not a word of this key; did you mean \"start\"?"},
        Given{Orvu::DataTypeServiceCompTagAction, {"pos=1"}, "pos: holds keys: pos.x"},
        Given{Orvu::DataTypeServiceCompTagAction, {"pos[0].x=1"}, "pos[0].x: \"pos\" is not a list"},
        Given{Orvu::DataTypeServiceList,
              {"serviceList.serviceId=1"},
              "serviceList.serviceId: \"serviceList\" is a list: serviceList[0]"},
        Given{Orvu::DataTypeServiceList,
              {"serviceList[1].serviceId=1"},
              "serviceList[1].serviceId: item 0 of the list comes first"},
        Given{Orvu::DataTypeServiceList,
              {"serviceList[x].serviceId=1"},
              "serviceList[x].serviceId: serviceList[x]: an item of a list is written as in list[0]"}));

}  // namespace
}  // namespace OrvuTests
