#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "support/Samples.h"

using namespace Orvu;

namespace OrvuTests {

void PrintTo(const Sample& sample, std::ostream* out)
{
    *out << sample.name;
}

namespace {

/// When a message writes its "HEADER". Its schema says so: the key is required, may be left out, or is not listed.
enum class HeaderRule { Always, ByItsFlag, Never };

HeaderRule ruleOf(const std::string& name)
{
    const Tree schema = schemaOf(name);
    if (!cJSON_GetObjectItem(cJSON_GetObjectItem(schema.get(), "properties"), "HEADER")) return HeaderRule::Never;
    const cJSON* key = nullptr;
    cJSON_ArrayForEach(key, cJSON_GetObjectItem(schema.get(), "required"))
    {
        if (std::string(cJSON_GetStringValue(key)) == "HEADER") return HeaderRule::Always;
    }
    return HeaderRule::ByItsFlag;
}

class AFilledMessage : public testing::TestWithParam<Sample> {
protected:
    /// The type that the message's text names first; "none" without one.
    static std::string headerWith(bool flag)
    {
        const auto message = GetParam().filled();
        message->serializeHeader(flag);
        const Tree tree = treeOf(textOf(*message));
        const cJSON* const header = cJSON_GetObjectItem(tree.get(), "HEADER");
        EXPECT_TRUE(!header || header == tree->child) << "after other members";
        return header ? header->valuestring : "none";
    }
};

TEST_P(AFilledMessage, WritesItsHeaderByTheRuleOfItsKind)
{
    const std::string& name = GetParam().name;
    const HeaderRule rule = ruleOf(name);
    EXPECT_EQ(headerWith(true), rule == HeaderRule::Never ? "none" : name);
    EXPECT_EQ(headerWith(false), rule == HeaderRule::Always ? name : "none");
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AFilledMessage, testing::ValuesIn(writtenSamples()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace OrvuTests
