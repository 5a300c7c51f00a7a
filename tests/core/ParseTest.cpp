#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include "orvu/Serializable.h"
#include "orvu/Services.h"
#include "support/FailingMemory.h"

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

TEST(ParsingAText, GivesNothingWhereANumberTextHasNoNumber)
{
    EXPECT_EQ(Serializable::parse(R"({"HEADER":"serviceComponent","componentTag":"0x"})"), nullptr);
}

TEST(ParsingAText, SaysWhenItIsOutOfMemory)
{
    for (const auto& [text, fault] : {Refused{R"({"HEADER":"serviceTime","time":"12:00"})", ""},
                                      {R"({"HEADER":"serviceTime"})", "line 1, column 1: time: required, missing"}}) {
        const auto parse = [text = text] {
            std::string reason;
            const std::unique_ptr<Serializable> message(Serializable::parse(text, reason));
            EXPECT_EQ(message != nullptr, reason.empty());
            return reason;
        };
        const int refusals = withMemoryRefused(parse, [fault = fault](const std::string& reason, bool refused) {
            EXPECT_TRUE(reason == fault || (refused && reason == "out of memory")) << reason;
        });
        EXPECT_GE(refusals, 1);
    }
}

}  // namespace
}  // namespace OrvuTests
