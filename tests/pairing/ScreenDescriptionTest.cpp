#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/PairingScreens.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kEmptyDescription = "{\n\t\"HEADER\":\t\"screenDescription\",\n\t\"screen_items\":\t[]\n}";

using Types = std::vector<std::string>;

Types typesOf(const ScreenDescription& description)
{
    Types types;
    for (const ScreenItem* item : description.items)
        types.push_back(item->type);
    return types;
}

TEST(AScreenDescription, StartsEmpty)
{
    const ScreenDescription description;
    EXPECT_EQ(description.getDataType(), 89u);
    EXPECT_TRUE(description.items.empty());
}

TEST(AScreenDescription, WritesItsHeaderWhateverTheFlagSays)
{
    ScreenDescription description;
    EXPECT_EQ(textOf(description), kEmptyDescription);
    description.serializeHeader(false);
    EXPECT_EQ(textOf(description), kEmptyDescription);
}

TEST(AScreenDescription, WritesItsItemsWithoutTheirHeaders)
{
    ScreenDescription description;
    description.addItem(new ScreenItem);
    description.addItem(new ScreenItem);
    description.items[0]->type = "title";
    description.items[0]->content = "Pair";
    description.items[1]->checked = "false";
    EXPECT_EQ(textOf(description),
              "{\n"
              "\t\"HEADER\":\t\"screenDescription\",\n"
              "\t\"screen_items\":\t[{\n"
              "\t\t\t\"type\":\t\"title\",\n"
              "\t\t\t\"visible\":\tfalse,\n"
              "\t\t\t\"enabled\":\tfalse,\n"
              "\t\t\t\"focused\":\tfalse,\n"
              "\t\t\t\"content\":\t\"Pair\"\n"
              "\t\t}, {\n"
              "\t\t\t\"type\":\t\"\",\n"
              "\t\t\t\"visible\":\tfalse,\n"
              "\t\t\t\"enabled\":\tfalse,\n"
              "\t\t\t\"focused\":\tfalse,\n"
              "\t\t\t\"checked\":\tfalse,\n"
              "\t\t\t\"contentList\":\t[]\n"
              "\t\t}]\n"
              "}");
    EXPECT_EQ(textOf(*description.items[0]).find("HEADER"), std::string::npos);
}

TEST(AScreenDescription, SkipsItemsWithoutAJsonText)
{
    ScreenDescription description;
    description.addItem(new Silent<ScreenItem>);
    description.addItem(new Saying<ScreenItem>("no JSON"));
    description.addItem(nullptr);
    description.items.push_back(nullptr);
    EXPECT_EQ(description.items.size(), 3u);
    EXPECT_EQ(textOf(description), kEmptyDescription);
}

TEST(AScreenDescription, CarriesWhateverJsonAnItemWrites)
{
    ScreenDescription description;
    description.addItem(new Saying<ScreenItem>("[{}]"));
    description.addItem(new Saying<ScreenItem>(R"("text")"));
    EXPECT_EQ(textOf(description),
              "{\n\t\"HEADER\":\t\"screenDescription\",\n\t\"screen_items\":\t[[{\n\t\t\t}], \"text\"]\n}");
}

TEST(AScreenDescription, DeletesItsItems)
{
    int destroyed = 0;
    {
        ScreenDescription description;
        description.addItem(new Counted<ScreenItem>(destroyed));
        description.items.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 1);
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

TEST(AScreenDescription, AppendsToTheItemsItHolds)
{
    ScreenDescription description;
    EXPECT_TRUE(description.deserialize(R"({"screen_items": [{"type": "a"}]})"));
    EXPECT_TRUE(description.deserialize(R"({"SCREEN_ITEMS": {"x": {"type": "b"}}})"));
    EXPECT_TRUE(description.deserialize(R"({"screen_items": [null, 5], "screen_items": [{"type": "c"}]})"));
    EXPECT_EQ(typesOf(description), (Types{"a", "b", "", ""}));
}

TEST(AScreenDescription, HasNoItemsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("text")", "[]", "{}"}) {
        ScreenDescription description;
        EXPECT_TRUE(description.deserialize((R"({"screen_items": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(description.items.empty()) << value;
    }
}

TEST(AScreenDescription, IsNotReadWithoutItsItems)
{
    ScreenDescription description;
    EXPECT_FALSE(description.deserialize(nullptr));
    for (const char* text : {"", "{", "{}", "[]", "5", R"({"contentList": []})", R"([{"screen_items": []}])"})
        EXPECT_FALSE(description.deserialize(text)) << text;
    EXPECT_TRUE(description.items.empty());
}

TEST(AScreenDescription, GivesNoReasons)
{
    ScreenDescription description;
    unsigned char error = 77;
    EXPECT_FALSE(description.deserialize(R"({"screen_items": []})", error));
    EXPECT_EQ(error, 77);
}

}  // namespace
}  // namespace OrvuTests
