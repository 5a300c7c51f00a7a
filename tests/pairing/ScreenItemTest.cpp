#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/PairingScreens.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Types = std::vector<std::string>;

Types typesOf(const std::vector<ScreenItem*>& items)
{
    Types types;
    for (const ScreenItem* item : items)
        types.push_back(item->type);
    return types;
}

/// An item read from a text that can be read.
struct Read : ScreenItem {
    explicit Read(const std::string& text) { EXPECT_TRUE(deserialize(text.c_str())) << text; }
};

/// An item that is about to be written without "HEADER".
void withoutHeader(ScreenItem& item)
{
    item.serializeHeader(false);
}

TEST(AScreenItem, WritesAnEmptyListWithoutContentAndChildren)
{
    ScreenItem item;
    item.visible = item.focused = true;
    withoutHeader(item);
    EXPECT_EQ(textOf(item),
              "{\n"
              "\t\"type\":\t\"\",\n"
              "\t\"visible\":\ttrue,\n"
              "\t\"enabled\":\tfalse,\n"
              "\t\"focused\":\ttrue,\n"
              "\t\"contentList\":\t[]\n"
              "}");
}

TEST(AScreenItem, WithContentHidesItsChildren)
{
    ScreenItem item;
    item.content = "text";
    item.addItem(new ScreenItem);
    withoutHeader(item);
    EXPECT_EQ(textOf(item),
              "{\n"
              "\t\"type\":\t\"\",\n"
              "\t\"visible\":\tfalse,\n"
              "\t\"enabled\":\tfalse,\n"
              "\t\"focused\":\tfalse,\n"
              "\t\"content\":\t\"text\"\n"
              "}");
    EXPECT_EQ(textOf(*item.items[0]).substr(0, 11), "{\n\t\"HEADER\"");  // a child that is not written keeps its flag
}

/// What an item with that check state writes for it; "" when it writes nothing.
std::string writtenCheck(const std::string& checked)
{
    ScreenItem item;
    item.checked = checked;
    const Tree tree = treeOf(textOf(item));
    cJSON* const member = cJSON_GetObjectItem(tree.get(), "checked");
    return member ? taken(cJSON_PrintUnformatted(member)) : "";
}

TEST(AScreenItem, WritesACheckStateOnlyWhenItHasOne)
{
    EXPECT_EQ(writtenCheck(""), "");
    EXPECT_EQ(writtenCheck("true"), "true");
    EXPECT_EQ(writtenCheck("false"), "false");
    EXPECT_EQ(writtenCheck("TRUE"), "false");
    EXPECT_EQ(writtenCheck("true "), "false");
    EXPECT_EQ(writtenCheck("1"), "false");
    EXPECT_EQ(writtenCheck(std::string("true\0", 5)), "false");
}

TEST(AScreenItem, ReadsACheckStateAsAText)
{
    Read item(R"({"checked": 1})");
    EXPECT_EQ(item.checked, "true");
    EXPECT_EQ(writtenCheck(item.checked), "true");
    EXPECT_EQ(Read(R"({"checked": 0})").checked, "false");
    EXPECT_EQ(Read(R"({"checked": "true"})").checked, "");
    EXPECT_EQ(Read("{}").checked, "");
}

TEST(AScreenItem, IsFocusedByEitherName)
{
    EXPECT_TRUE(Read(R"({"focused": true})").focused);
    EXPECT_TRUE(Read(R"({"isSelected": true})").focused);
    EXPECT_TRUE(Read(R"({"ISSELECTED": 1})").focused);
    EXPECT_FALSE(Read("{}").focused);
}

TEST(AScreenItem, PrefersTheFirstNameOfItsFocus)
{
    EXPECT_FALSE(Read(R"({"isSelected": true, "focused": false})").focused);
    EXPECT_FALSE(Read(R"({"focused": 0, "isSelected": 1})").focused);
    EXPECT_TRUE(Read(R"({"focused": true, "isSelected": false})").focused);
}

TEST(AScreenItem, TakesTheSecondNameOfItsFocusWhereTheFirstIsOfAnotherKind)
{
    for (const char* value : {"null", R"("false")", "[false]", R"({"a": false})"})
        EXPECT_TRUE(Read(R"({"isSelected": true, "focused": )" + std::string(value) + "}").focused) << value;
}

TEST(AScreenItem, KeepsItsFocusWhereBothNamesAreOfAnotherKind)
{
    ScreenItem item;
    item.focused = true;
    EXPECT_TRUE(item.deserialize(R"({"focused": "false", "isSelected": null})"));
    EXPECT_TRUE(item.focused);
}

TEST(AScreenItem, ReadsItsChildren)
{
    Read item(R"({"contentList": [{"type": "a", "visible": 1, "checked": false, "content": "text"},
                                  {"type": "b", "contentList": [{"type": "c", "isSelected": true}]}]})");
    ASSERT_EQ(typesOf(item.items), (Types{"a", "b"}));
    EXPECT_TRUE(item.items[0]->visible);
    EXPECT_EQ(item.items[0]->checked, "false");
    EXPECT_EQ(item.items[0]->content, "text");
    ASSERT_EQ(typesOf(item.items[1]->items), (Types{"c"}));
    EXPECT_TRUE(item.items[1]->items[0]->focused);
}

TEST(AScreenItem, ReadsNoChildrenBesideContent)
{
    Read item(R"({"contentList": [{"type": "a"}], "content": "text"})");
    EXPECT_EQ(item.content, "text");
    EXPECT_TRUE(item.items.empty());
    EXPECT_TRUE(Read(R"({"contentList": [{"type": "a"}], "content": ""})").items.empty());
}

TEST(AScreenItem, ReadsChildrenBesideContentOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"(["text"])", R"({"a": "text"})"}) {
        Read item(R"({"contentList": [{"type": "a"}], "content": )" + std::string(value) + "}");
        EXPECT_EQ(typesOf(item.items), (Types{"a"})) << value;
        EXPECT_EQ(item.content, "") << value;
    }
}

TEST(AScreenItem, ReadsChildrenThoughItHasContentOfItsOwn)
{
    ScreenItem item;
    item.content = "before";
    EXPECT_TRUE(item.deserialize(R"({"contentList": [{"type": "a"}]})"));
    EXPECT_EQ(item.content, "before");
    EXPECT_EQ(typesOf(item.items), (Types{"a"}));
}

}  // namespace
}  // namespace OrvuTests
