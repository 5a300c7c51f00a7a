#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "orvu/Ncl.h"
#include "support/Children.h"
#include "support/Messages.h"
#include "support/WrittenTexts.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AnNCLEvent, WritesNoFlagThatItNeverLearnt)
{
    NCLEvent event;
    EXPECT_EQ(event.getDataType(), 59u);
    EXPECT_EQ(event.prepared, nullptr);
    EXPECT_EQ(textOf(event), R"({"state":"unknown","occurrences":0})");
    event.prepared = new bool(false);
    event.state = StatusTypeSleeping;
    event.occurrences = -2;
    EXPECT_EQ(textOf(event), R"({"prepared":false,"state":"sleeping","occurrences":-2})");
}

TEST(AnNCLEvent, LearnsItsFlagFromABooleanOrANumber)
{
    for (const char* yes : {"true", "1", "-3"}) {
        NCLEvent event;
        EXPECT_TRUE(event.deserialize((std::string(R"({"prepared": )") + yes + "}").c_str()));
        ASSERT_NE(event.prepared, nullptr) << yes;
        EXPECT_TRUE(*event.prepared) << yes;
        bool* const flag = event.prepared;
        EXPECT_TRUE(event.deserialize(R"({"prepared": false})"));
        EXPECT_EQ(event.prepared, flag);
        EXPECT_FALSE(*event.prepared);
    }
    for (const char* none : {"null", R"("true")", "[true]", "{}"}) {
        NCLEvent event;
        EXPECT_TRUE(event.deserialize((std::string(R"({"prepared": )") + none + "}").c_str()));
        EXPECT_EQ(event.prepared, nullptr) << none;
    }
}

TEST(AnNCLEvent, ReadsBackAWordThatIsOnlyWrittenAsUnknown)
{
    NCLEvent event;
    event.state = StatusTypeRequesting;
    const std::string text = textOf(event);
    EXPECT_EQ(text, R"({"state":"requesting","occurrences":0})");
    EXPECT_TRUE(event.deserialize(text.c_str()));
    EXPECT_EQ(event.state, StatusTypeUnknown);
}

TEST(AnNCLNode, ReadsIntoTheEventThatItHas)
{
    NCLNode node;
    auto* const event = new NCLEvent;
    event->occurrences = 5;
    node.setPresentationEvent(event);
    EXPECT_TRUE(node.deserialize(R"({"presentationEvent": {"state": "paused"}})"));
    EXPECT_EQ(node.presentationEvent, event);
    EXPECT_EQ(event->state, StatusTypePaused);
    EXPECT_EQ(event->occurrences, 5);
    EXPECT_EQ(node.preparationEvent, nullptr);
}

TEST(AnNCLNode, LeavesTheEventThatItHadToTheCaller)
{
    int destroyed = 0;
    const auto first = std::make_unique<Counted<NCLEvent>>(destroyed);
    {
        NCLNode node;
        node.setPresentationEvent(first.get());
        node.setPresentationEvent(new Counted<NCLEvent>(destroyed));
        node.setPreparationEvent(new Counted<NCLEvent>(destroyed));
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(AnNCLNode, TakesNumbersOfItsEventsAsTheyPrint)
{
    NCLNode node;
    EXPECT_TRUE(node.deserialize(R"({"presentationEvent": {"occurrences": 2.9999999999999996},
                                     "preparationEvent": {"occurrences": 1e400}})"));
    EXPECT_EQ(node.presentationEvent->occurrences, 3);
    EXPECT_EQ(node.preparationEvent->occurrences, 0);
}

TEST(AnNCLNodeList, AnswersWithItsNodesAlone)
{
    NCLNodeList list;
    list.appid = "a";
    EXPECT_EQ(takenAs("nclNodeList-response", list.serializeResponse()), "{\n\t\"nodes\":\t[]\n}");
    list.addNode(new NCLNode);
    list.addNode(new Silent<NCLNode>);
    EXPECT_EQ(takenAs("nclNodeList-response", list.serializeResponse()),
              "{\n\t\"nodes\":\t[{\n\t\t\t\"id\":\t\"\",\n\t\t\t\"type\":\t\"unknown\"\n\t\t}]\n}");
}

TEST(AnNCLNodeAction, TellsWhetherInterfaceAndValueWereThere)
{
    NCLNodeAction action;
    EXPECT_TRUE(action.deserialize(R"({"interface": "i", "value": "v"})"));
    EXPECT_TRUE(action.hasInterface);
    EXPECT_TRUE(action.hasValue);
    EXPECT_TRUE(action.deserialize(R"({"interface": 5, "value": null})"));
    EXPECT_TRUE(action.hasInterface);
    EXPECT_TRUE(action.hasValue);
    EXPECT_EQ(action.interface, "i");
    EXPECT_EQ(action.value, "v");
    EXPECT_TRUE(action.deserialize("{}"));
    EXPECT_FALSE(action.hasInterface);
    EXPECT_FALSE(action.hasValue);
}

TEST(AnNCLNodeAction, KnowsTheActionsOfANode)
{
    const std::vector<int> known = {3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    for (int value = -1; value <= 40; ++value) {
        NCLNodeAction action;
        action.action = static_cast<StatusType>(value);
        EXPECT_EQ(action.validateArguments(), std::count(known.begin(), known.end(), value) == 1) << value;
    }
}

TEST(AnNCLNodeAction, NeedsANameForAnInterfaceThatWasGiven)
{
    NCLNodeAction action;
    action.action = StatusTypeSet;
    EXPECT_TRUE(action.validateArguments());
    action.hasInterface = true;
    EXPECT_FALSE(action.validateArguments());
    action.interface = "soundLevel";
    EXPECT_TRUE(action.validateArguments());
    for (const char* bad : {"a<b", "&", "say \"x\""}) {
        action.interface = bad;
        EXPECT_FALSE(action.validateArguments()) << bad;
    }
    action.hasInterface = false;
    EXPECT_FALSE(action.validateArguments());
    action.interface = "'>";
    action.value = "<&\"";
    EXPECT_TRUE(action.validateArguments());
}

}  // namespace
}  // namespace OrvuTests
