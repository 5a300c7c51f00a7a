#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "orvu/Explanation.h"
#include "support/Messages.h"
#include "tools/orvu/Examples.h"
#include "tools/orvu/JsonTrees.h"
#include "tools/orvu/Shortening.h"

namespace OrvuTests {
namespace {

using Orvu::DataType;

/// Every type that has an example.
std::vector<DataType> typesWithExamples()
{
    std::vector<DataType> types;
    for (const DataType type : allTypes())
        if (OrvuTool::examplesOf(Orvu::Serializable::dataTypeString(type))) types.push_back(type);
    return types;
}

class TheExampleOf : public testing::TestWithParam<DataType> {
protected:
    OrvuTool::JsonTree example() const
    {
        const std::string examples = OrvuTool::examplesOf(Orvu::Serializable::dataTypeString(GetParam()));
        return OrvuTool::JsonTree(cJSON_DetachItemFromArray(OrvuTool::parseText(examples).tree.get(), 0));
    }
    Orvu::Explanation explained(const cJSON* tree) const
    {
        return Orvu::explain(OrvuTool::pretty(tree).c_str(), GetParam());
    }
};

TEST_P(TheExampleOf, ATypeIsReadWhole)
{
    const OrvuTool::JsonTree tree = example();
    ASSERT_TRUE(tree);
    EXPECT_TRUE(explained(tree.get()).isRead);
}

TEST_P(TheExampleOf, ATypeIsReadWhenItIsShortenedAndCannotBeShortenedAnyMore)
{
    const OrvuTool::JsonTree tree = OrvuTool::shortened(example(), GetParam());
    ASSERT_TRUE(explained(tree.get()).isRead);
    for (int i = 0; i < cJSON_GetArraySize(tree.get()); ++i) {
        const OrvuTool::JsonTree shorter(cJSON_Duplicate(tree.get(), true));
        if (cJSON_GetArrayItem(shorter.get(), i)->string == std::string("HEADER")) continue;
        cJSON_DeleteItemFromArray(shorter.get(), i);
        EXPECT_FALSE(explained(shorter.get()).isRead) << OrvuTool::pretty(shorter.get());
    }
}

INSTANTIATE_TEST_SUITE_P(Catalogue, TheExampleOf, testing::ValuesIn(typesWithExamples()),
                         [](const auto& info) { return std::string(Orvu::Serializable::dataTypeString(info.param)); });

}  // namespace
}  // namespace OrvuTests
