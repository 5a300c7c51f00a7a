#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/PairingScreens.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Types = std::vector<std::string>;

Types typesOf(const ScreenDescription& description)
{
    Types types;
    for (const ScreenItem* item : description.items)
        types.push_back(item->type);
    return types;
}

TEST(AScreenDescription, ReadsItsItems)
{
    ScreenDescription description;
    EXPECT_TRUE(description.deserialize(
        R"({"HEADER": "screenDescription",
            "screen_items": [{"type": "a", "contentList": [{"type": "b"}]}, {"type": "c"}]})"));
    ASSERT_EQ(typesOf(description), (Types{"a", "c"}));
    ASSERT_EQ(description.items[0]->items.size(), 1u);
    EXPECT_EQ(description.items[0]->items[0]->type, "b");
}

}  // namespace
}  // namespace OrvuTests
