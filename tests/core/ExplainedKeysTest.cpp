#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "messages/core/Catalogue.h"
#include "orvu/Orvu.h"
#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

// Every message of the catalogue, by the keys that its contract asks for.

struct AType {
    std::string name;
    DataType type;
};

std::vector<AType> typesWithKeys()
{
    std::vector<AType> types;
    for (const DataType type : allTypes())
        if (!keysOf(type).empty()) types.push_back({Serializable::dataTypeString(type), type});
    return types;
}

class EveryKeyOf : public testing::TestWithParam<AType> {
protected:
    /// A text with all that the type writes.
    std::string filled() const
    {
        for (const Sample& sample : writtenSamples())
            if (sample.name == GetParam().name) return textOf(*sample.filled());
        return R"({"varValue": "x"})";  // of the one that is never written
    }

    /// The keys of the type that are in `text`, and read.
    std::vector<KeyDescription> keysIn(const std::string& text) const
    {
        std::vector<KeyDescription> keys = Orvu::keysOf(GetParam().type);
        const Explanation asItIs = explain(text.c_str(), GetParam().type);
        const Tree tree = treeOf(text);
        const auto isAway = [&](const KeyDescription& key) {
            const bool isNotRead = std::any_of(asItIs.findings.begin(), asItIs.findings.end(),
                                               [&](const Finding& finding) { return finding.path == key.key; });
            return key.key.empty() || isNotRead || !cJSON_GetObjectItemCaseSensitive(tree.get(), key.key.c_str());
        };
        keys.erase(std::remove_if(keys.begin(), keys.end(), isAway), keys.end());
        return keys;
    }

    /// What is found under `path`; it agrees with reading the text about whether it can be read.
    std::vector<Finding> foundUnder(const std::string& path, cJSON* tree) const
    {
        const std::string text = taken(cJSON_Print(tree));
        const Explanation explanation = explain(text.c_str(), GetParam().type);
        EXPECT_EQ(explanation.isRead, isRead(text)) << text;
        std::vector<Finding> found;
        for (const Finding& finding : explanation.findings)
            if (finding.path == path) found.push_back(finding);
        return found;
    }

    bool isRead(const std::string& text) const
    {
        const std::unique_ptr<Serializable> message(entryOf(GetParam().type)->make(GetParam().type));
        try {
            return message->deserialize(text.c_str());
        } catch (const std::logic_error&) {
            return false;
        }
    }
};

TEST_P(EveryKeyOf, ThatIsRequiredIsMissed)
{
    const std::string text = filled();
    for (const KeyDescription& key : keysIn(text)) {
        if (!key.isRequired) continue;
        const Tree tree = treeOf(text);
        cJSON_DeleteItemFromObject(tree.get(), key.key.c_str());
        const std::vector<Finding> found = foundUnder(key.key, tree.get());
        ASSERT_EQ(found.size(), 1u) << key.key;
        EXPECT_EQ(found[0].kind, Finding::Fault);
        EXPECT_EQ(found[0].message, "required, missing");
    }
}

TEST_P(EveryKeyOf, IsFoundToBeOfTheWrongKind)
{
    const std::string text = filled();
    for (const KeyDescription& key : keysIn(text)) {
        if (key.kind == KeyDescription::Anything || key.kind == KeyDescription::Nothing) continue;
        const bool isNumber = key.kind == KeyDescription::Number || key.kind == KeyDescription::Boolean;
        const bool isEither = key.kind == KeyDescription::NumberOrText;
        const Tree tree = treeOf(text);
        cJSON* const wrong = isEither   ? cJSON_CreateArray()
                             : isNumber ? cJSON_CreateString("x")
                                        : cJSON_CreateNumber(5);
        cJSON_ReplaceItemInObjectCaseSensitive(tree.get(), key.key.c_str(), wrong);
        const std::vector<Finding> found = foundUnder(key.key, tree.get());
        ASSERT_EQ(found.size(), 1u) << key.key;
        EXPECT_NE(found[0].kind, Finding::NotRead) << key.key;
    }
}

TEST_P(EveryKeyOf, IsTheNearestOfItsMisspelling)
{
    const std::string text = filled();
    for (const KeyDescription& key : keysIn(text)) {
        if (key.key.size() < 3) continue;
        const std::string misspelt = key.key + "q";
        const Tree tree = treeOf(text);
        cJSON* const value = cJSON_DetachItemFromObjectCaseSensitive(tree.get(), key.key.c_str());
        cJSON_AddItemToObject(tree.get(), misspelt.c_str(), value);
        const std::vector<Finding> found = foundUnder(misspelt, tree.get());
        ASSERT_EQ(found.size(), 1u) << key.key;
        EXPECT_EQ(found[0].kind, Finding::NotRead);
        EXPECT_EQ(found[0].message, "not read; the nearest is \"" + key.key + "\"");
        if (!key.isRequired) continue;
        const std::vector<Finding> fault = foundUnder(key.key, tree.get());
        ASSERT_EQ(fault.size(), 1u) << key.key;
        EXPECT_EQ(fault[0].message, "required, missing; there is \"" + misspelt + "\"");
    }
}

std::string nameOfType(const testing::TestParamInfo<AType>& info)
{
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(InTheCatalogue, EveryKeyOf, testing::ValuesIn(typesWithKeys()), nameOfType);

}  // namespace
}  // namespace OrvuTests
