#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

#include "orvu/ServiceComponents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::vector<int> pidsOf(const ServiceComponentList& list)
{
    std::vector<int> pids;
    for (const ServiceComponent* component : list.components)
        pids.push_back(component->pid);
    return pids;
}

using Pids = std::vector<int>;

TEST(AServiceComponentList, ReadsItsComponents)
{
    ServiceComponentList list;
    EXPECT_TRUE(list.deserialize(R"({"HEADER": "components", "COMPONENTS": [
        {"pid": 1, "componentTag": "0x05", "pos": {"x": 7}}, {"pid": 2}], "components": [{"pid": 3}]})"));
    ASSERT_EQ(pidsOf(list), (Pids{1, 2}));
    EXPECT_EQ(list.components[0]->componentTag, 5);
    ASSERT_NE(list.components[0]->pos, nullptr);
    EXPECT_EQ(list.components[0]->pos->x, 7);
    EXPECT_EQ(textOf(*list.components[1]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AServiceComponentList, LetsTheExceptionsOfItsComponentsPass)
{
    ServiceComponentList list;
    EXPECT_THROW(list.deserialize(R"({"components": [{"pid": 1}, {"pid": 2, "componentTag": "0xffffffff"}, {}]})"),
                 std::out_of_range);
    EXPECT_EQ(pidsOf(list), (Pids{1}));  // what was read before stays
    EXPECT_THROW(list.deserialize(R"({"components": [{"componentTag": "0x"}]})"), std::invalid_argument);
    EXPECT_THROW(list.deserialize(R"({"components": [{"pos": {"w": "ab%"}}]})"), std::invalid_argument);
}

}  // namespace
}  // namespace OrvuTests
