#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/ServiceComponents.h"
#include "support/BothRoads.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

const std::vector<std::string> kPositionKeys = {"HEADER", "x", "Y", "w", "w", "h"};
const std::vector<std::string> kComponentKeys = {"HEADER", "streamType", "COMPONENTTAG",   "componentTag",
                                                 "pid",    "state",      "streamContent",  "vol",
                                                 "pos",    "pid",        "dataComponentId"};

TEST(AServiceComponentOnBothRoads, WritesAndReadsTheSamePosition)
{
    const auto withPosition = [](Position* pos) {
        auto component = std::make_unique<ServiceComponent>();
        component->componentTag = 0;
        component->pos = pos;
        return component;
    };
    expectTheSameText<Position>([&](Position* pos) { return textOf(*withPosition(pos)); });
    expectTheSameRead<Position>(kPositionKeys, [&](Position* pos, const std::string& item) {
        const auto component = withPosition(pos);
        EXPECT_TRUE(component->deserialize((R"({"pos": )" + item + "}").c_str()));
        return textOf(*component);
    });
}

TEST(AComponentActionOnBothRoads, WritesAndReadsTheSamePosition)
{
    expectTheSameText<Position>([](Position* pos) {
        ServiceCompTagAction action;
        action.pos = pos;
        return textOf(action);
    });
    testing::internal::CaptureStdout();
    expectTheSameRead<Position>(kPositionKeys, [](Position* pos, const std::string& item) {
        ServiceCompTagAction action;
        action.pos = pos;
        unsigned char error = 77;
        action.deserialize((R"({"pos": )" + item + "}").c_str(), error);
        return std::to_string(error) + textOf(action);
    });
    testing::internal::GetCapturedStdout();
}

TEST(AServiceComponentListOnBothRoads, WritesAndReadsTheSameComponents)
{
    expectTheSameText<ServiceComponent>([](ServiceComponent* component) {
        ServiceComponentList list;
        list.addComponent(component);
        return textOf(list);
    });
    expectReadAsAlone<ServiceComponentList>(&ServiceComponentList::components, kComponentKeys,
                                            {R"({"components": )", "}"});
}

}  // namespace
}  // namespace OrvuTests
