#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "orvu/ServiceContext.h"
#include "support/Samples.h"

/// The examples that the schemas give, and those of examples/answers, as the library reads them.

namespace OrvuTests {
namespace {

/// One example text with the name of the message that reads it.
struct Example {
    std::string title;  // of the example among all
    std::string message;
    std::string text;
};

void PrintTo(const Example& example, std::ostream* out)
{
    *out << example.title;
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

std::string printed(const cJSON* item)
{
    char* const text = cJSON_PrintUnformatted(item);
    const std::string copy = text;
    cJSON_free(text);
    return copy;
}

void addExamplesOf(std::vector<Example>& all, const std::string& message, const cJSON* schema)
{
    const cJSON* example = nullptr;
    cJSON_ArrayForEach(example, cJSON_GetObjectItem(schema, "examples"))
    {
        all.push_back({message, message, printed(example)});
    }
    const cJSON* const request = cJSON_GetObjectItem(cJSON_GetObjectItem(schema, "x-request"), "example");
    if (request) all.push_back({message + "-request", message, printed(request)});
}

std::vector<Example> schemaExamples()
{
    std::vector<Example> all;
    for (const Sample& sample : samples())
        addExamplesOf(all, sample.name, schemaOf(sample.name).get());
    return all;
}

std::vector<Example> everyExample()
{
    std::vector<Example> all = schemaExamples();
    for (const auto& entry : std::filesystem::directory_iterator(ORVU_EXAMPLE_ANSWERS)) {
        const std::string text = contentOf(entry.path());
        const std::string header = cJSON_GetStringValue(cJSON_GetObjectItem(treeOf(text).get(), "HEADER"));
        all.push_back({entry.path().stem().string() + "-answer", header, text});
    }
    return all;
}

std::string nameOfExample(const testing::TestParamInfo<Example>& info)
{
    return std::regex_replace(info.param.title, std::regex("-"), "_");
}

const Sample& sampleOf(const std::string& name)
{
    const auto sample = std::find_if(samples().begin(), samples().end(),
                                     [&name](const Sample& candidate) { return candidate.name == name; });
    EXPECT_NE(sample, samples().end()) << name;
    return *sample;
}

/// Where `now` lacks what `before` has, as a path; empty when it has all of it.
std::string lostFrom(const cJSON* before, const cJSON* now, const std::string& path)
{
    if (!now) return path;
    if (!before->child) return cJSON_Compare(before, now, true) ? "" : path;
    int index = 0;
    const cJSON* member = nullptr;
    cJSON_ArrayForEach(member, before)
    {
        const bool isNamed = member->string != nullptr;
        const cJSON* const same =
            isNamed ? cJSON_GetObjectItemCaseSensitive(now, member->string) : cJSON_GetArrayItem(now, index);
        const std::string name = isNamed ? "." + std::string(member->string) : "[" + std::to_string(index) + "]";
        const std::string lost = lostFrom(member, same, path + name);
        if (!lost.empty()) return lost;
        ++index;
    }
    return "";
}

class AnExampleOfASchema : public testing::TestWithParam<Example> {};

TEST_P(AnExampleOfASchema, IsReadWithoutLoss)
{
    const Sample& sample = sampleOf(GetParam().message);
    const std::unique_ptr<Orvu::Serializable> message = sample.empty();
    ASSERT_TRUE(message->deserialize(GetParam().text.c_str()));
    if (!sample.isWritten) return;
    EXPECT_EQ(lostFrom(treeOf(GetParam().text).get(), treeOf(textOf(*message)).get(), "$"), "");
}

INSTANTIATE_TEST_SUITE_P(Schemas, AnExampleOfASchema, testing::ValuesIn(schemaExamples()), nameOfExample);

/// Calls `visit` for each object in `item`.
void forEachObject(const cJSON* item, const std::function<void(const cJSON*)>& visit)
{
    if (cJSON_IsObject(item)) visit(item);
    const cJSON* member = nullptr;
    cJSON_ArrayForEach(member, item)
    {
        forEachObject(member, visit);
    }
}

/// The text under `key`; "" when there is none.
std::string textAt(const cJSON* object, const char* key)
{
    const char* const text = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object, key));
    return text ? text : "";
}

unsigned numberAt(const cJSON* object, const char* key)
{
    return static_cast<unsigned>(cJSON_GetObjectItemCaseSensitive(object, key)->valueint);
}

void expectGoodLocator(const cJSON* object)
{
    const std::string locator = textAt(object, "serviceContextId");
    if (locator.empty()) return;
    EXPECT_TRUE(Orvu::ServiceContext::parse(locator).valid) << locator;
    if (!cJSON_HasObjectItem(object, "serviceId")) return;
    EXPECT_EQ(locator, Orvu::ServiceContext::generateStringId(numberAt(object, "originalNetworkId"),
                                                              numberAt(object, "transportStreamId"),
                                                              numberAt(object, "serviceId")));
}

void expectRecommendedTimes(const cJSON* object)
{
    for (const char* const key : {"time", "timestamp", "startTime", "endTime"}) {
        const std::string time = textAt(object, key);
        if (time.empty()) continue;
        EXPECT_THAT(time, testing::MatchesRegex("2026-11-2[0-9]T[0-9:]{8}-03:00")) << key;
    }
}

class AnyExample : public testing::TestWithParam<Example> {};

TEST_P(AnyExample, NamesServicesAsGenerateStringIdDoes)
{
    forEachObject(treeOf(GetParam().text).get(), expectGoodLocator);
}

TEST_P(AnyExample, GivesTimesInTheRecommendedForm)
{
    forEachObject(treeOf(GetParam().text).get(), expectRecommendedTimes);
}

INSTANTIATE_TEST_SUITE_P(SchemasAndAnswers, AnyExample, testing::ValuesIn(everyExample()), nameOfExample);

/// The samples of the tests have locators of their own; these can be made, too.
TEST(TheSampleServices, HaveLocatorsThatGenerateStringIdMakes)
{
    const Tree list = treeOf(textOf(*sampleOf("serviceList").filled()));
    const cJSON* service = nullptr;
    cJSON_ArrayForEach(service, cJSON_GetObjectItem(list.get(), "serviceList"))
    {
        EXPECT_EQ(textAt(service, "serviceContextId"),
                  Orvu::ServiceContext::generateStringId(1, 2, numberAt(service, "serviceId")));
    }
}

}  // namespace
}  // namespace OrvuTests
