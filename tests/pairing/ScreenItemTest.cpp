#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/PairingScreens.h"
#include "support/Children.h"
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

TEST(AScreenItem, StartsEmpty)
{
    const ScreenItem item;
    EXPECT_EQ(item.getDataType(), 90u);
    EXPECT_EQ(item.type + item.checked + item.content, "");
    EXPECT_FALSE(item.enabled || item.focused || item.visible);
    EXPECT_TRUE(item.items.empty());
}

TEST(AScreenItem, WritesItsKeysInTheAgreedOrder)
{
    ScreenItem item;
    item.type = "button";
    item.enabled = true;
    item.checked = "true";
    item.content = "OK";
    EXPECT_EQ(textOf(item),
              "{\n"
              "\t\"HEADER\":\t\"screenItem\",\n"
              "\t\"type\":\t\"button\",\n"
              "\t\"visible\":\tfalse,\n"
              "\t\"enabled\":\ttrue,\n"
              "\t\"focused\":\tfalse,\n"
              "\t\"checked\":\ttrue,\n"
              "\t\"content\":\t\"OK\"\n"
              "}");
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

TEST(AScreenItem, WritesItsChildrenInOrderWithoutTheirHeaders)
{
    ScreenItem item;
    item.addItem(new ScreenItem);
    item.addItem(new ScreenItem);
    item.items[0]->type = "row";
    item.items[0]->addItem(new ScreenItem);
    item.items[1]->content = "text";
    withoutHeader(item);
    EXPECT_EQ(textOf(item),
              "{\n"
              "\t\"type\":\t\"\",\n"
              "\t\"visible\":\tfalse,\n"
              "\t\"enabled\":\tfalse,\n"
              "\t\"focused\":\tfalse,\n"
              "\t\"contentList\":\t[{\n"
              "\t\t\t\"type\":\t\"row\",\n"
              "\t\t\t\"visible\":\tfalse,\n"
              "\t\t\t\"enabled\":\tfalse,\n"
              "\t\t\t\"focused\":\tfalse,\n"
              "\t\t\t\"contentList\":\t[{\n"
              "\t\t\t\t\t\"type\":\t\"\",\n"
              "\t\t\t\t\t\"visible\":\tfalse,\n"
              "\t\t\t\t\t\"enabled\":\tfalse,\n"
              "\t\t\t\t\t\"focused\":\tfalse,\n"
              "\t\t\t\t\t\"contentList\":\t[]\n"
              "\t\t\t\t}]\n"
              "\t\t}, {\n"
              "\t\t\t\"type\":\t\"\",\n"
              "\t\t\t\"visible\":\tfalse,\n"
              "\t\t\t\"enabled\":\tfalse,\n"
              "\t\t\t\"focused\":\tfalse,\n"
              "\t\t\t\"content\":\t\"text\"\n"
              "\t\t}]\n"
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

TEST(AScreenItem, SkipsChildrenWithoutAJsonText)
{
    ScreenItem item;
    item.addItem(new Silent<ScreenItem>);
    item.addItem(new Saying<ScreenItem>("no JSON"));
    item.addItem(new Saying<ScreenItem>("5"));
    item.addItem(new Saying<ScreenItem>(R"({"HEADER": "mine"})"));
    item.addItem(new Saying<ScreenItem>("{"));
    withoutHeader(item);
    EXPECT_EQ(textOf(item),
              "{\n"
              "\t\"type\":\t\"\",\n"
              "\t\"visible\":\tfalse,\n"
              "\t\"enabled\":\tfalse,\n"
              "\t\"focused\":\tfalse,\n"
              "\t\"contentList\":\t[5, {\n"
              "\t\t\t\"HEADER\":\t\"mine\"\n"
              "\t\t}]\n"
              "}");
}

TEST(AScreenItem, SwitchesTheHeadersOfItsChildrenOffForGood)
{
    ScreenItem item;
    item.addItem(new ScreenItem);
    item.addItem(new Silent<ScreenItem>);
    textOf(item);
    EXPECT_EQ(textOf(*item.items[0]).find("HEADER"), std::string::npos);
    EXPECT_EQ(taken(item.items[1]->ScreenItem::serialize()).find("HEADER"), std::string::npos);
}

TEST(AScreenItem, PassesOverNulls)
{
    ScreenItem item;
    item.addItem(nullptr);
    EXPECT_TRUE(item.items.empty());
    item.items.push_back(nullptr);
    item.addItem(new Saying<ScreenItem>("5"));
    EXPECT_NE(textOf(item).find("\"contentList\":\t[5]"), std::string::npos);
}

TEST(AScreenItem, DeletesItsChildren)
{
    int destroyed = 0;
    {
        ScreenItem item;
        item.addItem(new Counted<ScreenItem>(destroyed));
        item.items[0]->addItem(new Counted<ScreenItem>(destroyed));
        item.items.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(AScreenItem, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<ScreenItem> || std::is_copy_assignable_v<ScreenItem>);
    EXPECT_FALSE(std::is_copy_constructible_v<ScreenDescription> || std::is_copy_assignable_v<ScreenDescription>);
}

TEST(AScreenItem, ReadsAnEmptyObject)
{
    Read item("{}");
    EXPECT_TRUE(item.items.empty());
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

TEST(AScreenItem, MakesAChildOfAnyElement)
{
    EXPECT_EQ(typesOf(Read(R"({"contentList": [null, 5, "text", true, [], {"type": "a"}]})").items),
              (Types{"", "", "", "", "", "a"}));
    EXPECT_EQ(typesOf(Read(R"({"contentList": {"x": {"type": "a"}, "y": {"type": "b"}}})").items), (Types{"a", "b"}));
}

TEST(AScreenItem, HasNoChildrenUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("text")", "[]", "{}"})
        EXPECT_TRUE(Read(R"({"contentList": )" + std::string(value) + "}").items.empty()) << value;
}

TEST(AScreenItem, AppendsToTheChildrenItHolds)
{
    Read item(R"({"contentList": [{"type": "a"}]})");
    EXPECT_TRUE(item.deserialize(R"({"contentList": [{"type": "b"}, {"type": "c"}]})"));
    EXPECT_EQ(typesOf(item.items), (Types{"a", "b", "c"}));
}

TEST(AScreenItem, TakesTheFirstOfEqualLists)
{
    EXPECT_EQ(typesOf(Read(R"({"CONTENTLIST": [{"type": "a"}], "contentList": [{"type": "b"}]})").items), (Types{"a"}));
}

TEST(AScreenItem, HasAccessors)
{
    ScreenItem item;
    item.setType("button");
    item.setChecked("true");
    item.setContent("OK");
    item.setEnabled(true);
    EXPECT_EQ(item.getType() + item.getChecked() + item.getContent(), "buttontrueOK");
    EXPECT_TRUE(item.isEnabled() && !item.isFocused() && !item.isVisible());
    item.setFocused(true);
    EXPECT_TRUE(item.isFocused() && !item.isVisible());
    item.setVisible(true);
    item.setEnabled(false);
    EXPECT_TRUE(item.isVisible() && !item.isEnabled());
}

}  // namespace
}  // namespace OrvuTests
