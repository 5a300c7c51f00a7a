#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include "orvu/Serializable.h"
#include "orvu/Services.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(ParsingAText, MakesTheMessageThatItsHeaderNames)
{
    std::string reason = "of before";
    const std::unique_ptr<Serializable> message(
        Serializable::parse(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})", reason));
    ASSERT_TRUE(message);
    ASSERT_EQ(message->getDataType(), DataTypeServiceSelection);
    EXPECT_EQ(static_cast<ServiceSelection&>(*message).serviceContextId, "1.2.01");
    EXPECT_EQ(reason, "");
}

using Refused = std::pair<const char*, const char*>;

class ATextThatIsNotAMessage : public testing::TestWithParam<Refused> {};

TEST_P(ATextThatIsNotAMessage, IsRefusedWithAReason)
{
    std::string reason;
    EXPECT_EQ(Serializable::parse(GetParam().first, reason), nullptr);
    EXPECT_EQ(reason, GetParam().second);
    EXPECT_EQ(Serializable::parse(GetParam().first), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Parsing, ATextThatIsNotAMessage,
    testing::Values(Refused{nullptr, "line 1, column 1: is empty"}, Refused{"", "line 1, column 1: is empty"},
                    Refused{"{", "line 1, column 2: ends inside an object"},
                    Refused{"[1]", "line 1, column 1: HEADER: missing, since the text is not an object"},
                    Refused{R"({"a":1})", "line 1, column 1: HEADER: required, missing: nothing names the type"},
                    Refused{R"({"HEADER":"nonsense"})", "line 1, column 11: HEADER: \"nonsense\" names no type"},
                    Refused{R"({"HEADER":"pos"})",
                            "line 1, column 11: HEADER: \"pos\" names a type that cannot be received"},
                    Refused{R"({"HEADER":"eventInfoList"})", "line 1, column 1: schedule: required, missing"}));

}  // namespace
}  // namespace OrvuTests
