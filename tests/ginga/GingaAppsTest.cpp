#include <gtest/gtest.h>

#include "orvu/GingaApps.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AGingaApp, NamesItsEnumerationsFromInsideItsClass)
{
    RestGingaApp app;
    app.type = RestGingaApp::GingaAppType::GingaAppTypeGingaNCL;
    const RestGingaApp::GingaControlCode code = GingaControlCodePresent;
    const RestGingaApp::GingaState state = GingaStateRunning;
    EXPECT_STREQ(RestGingaApp::typeToString(app.type), "Ginga-NCL");
    EXPECT_STREQ(RestGingaApp::controlCodeToString(code), "PRESENT");
    EXPECT_STREQ(RestGingaApp::stateToString(state), "running");
}

TEST(AGingaApp, WritesValuesBeyondItsWordsAsEmptyTexts)
{
    RestGingaApp app;
    app.type = static_cast<GingaAppType>(7);
    app.controlCode = static_cast<GingaControlCode>(8);
    app.state = static_cast<GingaState>(-1);
    const std::string text = textOf(app);
    EXPECT_NE(text.find("\"type\":\t\"\""), std::string::npos);
    EXPECT_NE(text.find("\"controlCode\":\t\"\""), std::string::npos);
    EXPECT_NE(text.find("\"state\":\t\"\""), std::string::npos);
}

TEST(AGingaAppList, KeepsItsServiceWhenItsAppsAreMissing)
{
    GingaAppList list;
    EXPECT_FALSE(list.deserialize(R"({"serviceContextId": "1.2.01"})"));
    EXPECT_EQ(list.serviceContextId, "1.2.01");
}

TEST(AGingaAppAction, AcceptsStartAndStopOnly)
{
    for (int value = -1; value <= 26; ++value) {
        GingaAppAction action;
        action.action = static_cast<StatusType>(value);
        unsigned char code = 77;
        const bool accepted = value == StatusTypeStart || value == StatusTypeStop;
        EXPECT_EQ(action.checkArguments(code), accepted) << value;
        EXPECT_EQ(code, accepted ? 77 : 3) << value;
    }
}

struct Refusal {
    const char* text;
    int code;
};

TEST(AGingaAppAction, TellsWhyItCannotBeRead)
{
    for (const Refusal& refusal : {Refusal{"{}", 2}, Refusal{"5", 2}, Refusal{"[]", 2}, Refusal{R"({"action": 3})", 2},
                                   Refusal{R"({"action": null})", 2}, Refusal{R"({"action": ["start"]})", 2},
                                   Refusal{R"({"action": "pause"})", 3}, Refusal{R"({"action": "Start"})", 3},
                                   Refusal{R"({"action": ""})", 3}, Refusal{R"({"action": "requesting"})", 3}}) {
        GingaAppAction action;
        unsigned char code = 77;
        EXPECT_FALSE(action.deserialize(refusal.text, code)) << refusal.text;
        EXPECT_EQ(code, refusal.code) << refusal.text;
    }
}

TEST(AGingaAppAction, KeepsWhatItReadBeforeItFailed)
{
    GingaAppAction action;
    EXPECT_FALSE(action.deserialize(R"({"appid": "a", "action": "pause"})"));
    EXPECT_EQ(action.appid, "a");
    EXPECT_FALSE(action.deserialize(R"({"appid": "c"})"));
    EXPECT_EQ(action.appid, "c");
}

}  // namespace
}  // namespace OrvuTests
