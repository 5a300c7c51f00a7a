#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "orvu/PairingScreens.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// `count` items, each in the one before; each takes two levels, its object and its list.
std::unique_ptr<ScreenItem> nestedItems(int count)
{
    auto item = std::make_unique<ScreenItem>();
    for (; count > 1; --count) {
        auto outer = std::make_unique<ScreenItem>();
        outer->addItem(item.release());
        item = std::move(outer);
    }
    return item;
}

std::string nestedText(int count)
{
    std::string text;
    for (int i = 1; i < count; ++i)
        text += R"({"contentList":[)";
    text += R"({"type":"innermost","contentList":[]})";
    for (int i = 1; i < count; ++i)
        text += "]}";
    return text;
}

int depthOf(const ScreenItem& item)
{
    return item.items.empty() ? 1 : 1 + depthOf(*item.items[0]);
}

TEST(ScreenItems, AreWrittenFiveHundredDeep)
{
    ScreenItem read;
    ASSERT_TRUE(read.deserialize(textOf(*nestedItems(500)).c_str()));
    EXPECT_EQ(depthOf(read), 500);
}

TEST(ScreenItems, AreNotWrittenDeeper)
{
    EXPECT_EQ(nestedItems(501)->serialize(), nullptr);
    EXPECT_EQ(nestedItems(2000)->serialize(), nullptr);
}

TEST(ScreenItems, AreReadFiveHundredDeep)
{
    ScreenItem item;
    ASSERT_TRUE(item.deserialize(nestedText(500).c_str()));
    EXPECT_EQ(depthOf(item), 500);
}

TEST(ScreenItems, AreNotReadDeeper)
{
    ScreenItem item;
    EXPECT_FALSE(item.deserialize(nestedText(501).c_str()));
    EXPECT_FALSE(item.deserialize(nestedText(100000).c_str()));
    EXPECT_TRUE(item.items.empty());
}

TEST(ScreenItems, WithContentTakeOneLevel)
{
    std::unique_ptr<ScreenItem> item = nestedItems(500);
    ScreenItem* innermost = item.get();
    while (!innermost->items.empty())
        innermost = innermost->items[0];
    innermost->addItem(new ScreenItem);
    EXPECT_EQ(item->serialize(), nullptr);
    innermost->content = "text";  // hides the child
    EXPECT_NE(textOf(*item), "(null)");
}

TEST(AScreenDescription, IsWrittenWithItemsUpToTheSameDepth)
{
    ScreenDescription description;
    description.addItem(nestedItems(499).release());
    EXPECT_NE(textOf(description), "(null)");
    description.addItem(nestedItems(500).release());
    EXPECT_EQ(textOf(description), "(null)");
}

}  // namespace
}  // namespace OrvuTests
