#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/JsonWriter.h"
#include "orvu/PairingScreens.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string repeated(const std::string& part, int times)
{
    std::string text;
    for (int i = 0; i < times; ++i)
        text += part;
    return text;
}

std::string nestedArrays(int levels)
{
    return repeated("[", levels) + repeated("]", levels);
}

/// Arrays and objects by turns, which no parser makes deeper than it reads.
Tree nestedTree(int levels)
{
    Tree tree(cJSON_CreateArray());
    for (int level = 1; level < levels; ++level) {
        Tree outer(level % 2 ? cJSON_CreateObject() : cJSON_CreateArray());
        level % 2 ? cJSON_AddItemToObject(outer.get(), "a", tree.release())
                  : cJSON_AddItemToArray(outer.get(), tree.release());
        tree = std::move(outer);
    }
    return tree;
}

TEST(Nesting, IsWrittenThousandLevelsDeep)
{
    const Tree tree = nestedTree(1000);
    EXPECT_EQ(taken(printed(*tree)), taken(cJSON_Print(tree.get())));
    EXPECT_EQ(taken(printed(*treeOf(nestedArrays(1000)))), nestedArrays(1000));
}

TEST(Nesting, IsNotWrittenDeeper)
{
    EXPECT_EQ(printed(*nestedTree(1001)), nullptr);
    EXPECT_EQ(printed(*nestedTree(5000)), nullptr);
}

TEST(Nesting, IsCountedForEachBranchAlone)
{
    const Tree tree(cJSON_CreateArray());
    for (int i = 0; i < 3; ++i)
        cJSON_AddItemToArray(tree.get(), nestedTree(999).release());
    EXPECT_EQ(taken(printed(*tree)), taken(cJSON_Print(tree.get())));
}

TEST(Nesting, FailsForGoodOnceItIsTooDeep)
{
    const Tree tree(cJSON_CreateArray());
    cJSON_AddItemToArray(tree.get(), nestedTree(1000).release());
    cJSON_AddItemToArray(tree.get(), cJSON_CreateNumber(1));
    EXPECT_EQ(printed(*tree), nullptr);
}

TEST(Nesting, OfMessagesEndsAtThousandLevels)
{
    std::vector<Chain> chain(1001);
    for (std::size_t i = 1; i < chain.size(); ++i)
        chain[i - 1].child = &chain[i];
    EXPECT_EQ(textOf(chain[1]), repeated("{\"child\":", 999) + "{}" + repeated("}", 999));
    EXPECT_EQ(textOf(chain[0]), "(null)");
}

TEST(Nesting, WithoutEndIsNotWritten)
{
    Chain chain;
    chain.child = &chain;
    EXPECT_EQ(textOf(chain), "(null)");
}

TEST(Nesting, WithoutEndInManyBranchesIsNotWritten)
{
    ScreenItem item;
    item.items.assign(3, &item);
    EXPECT_EQ(textOf(item), "(null)");
    item.items.clear();  // none of them was its own
}

TEST(Nesting, OfAnApplicationsTextCountsWhereItStands)
{
    ScreenDescription description;  // two levels: the object and its array
    description.addItem(new Saying<ScreenItem>(nestedArrays(998)));
    EXPECT_EQ(textOf(description),
              "{\n\t\"HEADER\":\t\"screenDescription\",\n\t\"screen_items\":\t[" + nestedArrays(998) + "]\n}");
    description.addItem(new Saying<ScreenItem>(nestedArrays(999)));
    EXPECT_EQ(textOf(description), "(null)");
}

TEST(Nesting, OfAnApplicationsTextBeyondTheParsersReachIsSkipped)
{
    ScreenDescription description;
    description.addItem(new Saying<ScreenItem>(nestedArrays(1001)));
    EXPECT_EQ(textOf(description), "{\n\t\"HEADER\":\t\"screenDescription\",\n\t\"screen_items\":\t[]\n}");
}

TEST(Nesting, OfAParsedItemIsReadThousandLevelsDeep)
{
    ScreenItem item;
    EXPECT_TRUE(item.deserializeObject(nestedTree(1000).get()));
    EXPECT_FALSE(item.deserializeObject(nestedTree(1001).get()));
}

}  // namespace
}  // namespace OrvuTests
