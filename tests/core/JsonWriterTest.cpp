#include <climits>
#include <gmock/gmock.h>
#include <string>
#include <type_traits>
#include <utility>

#include "core/RandomJson.h"
#include "core/TestMessages.h"
#include "messages/core/JsonWriter.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string compact(Scripted::Writes writes)
{
    return written(PrintStyle::Compact, std::move(writes));
}

std::string formatted(Scripted::Writes writes)
{
    return written(PrintStyle::Formatted, std::move(writes));
}

TEST(AJsonWriter, WritesAnEmptyObject)
{
    EXPECT_EQ(compact({}), "{}");
    EXPECT_EQ(formatted({}), "{\n}");
}

TEST(AJsonWriter, WritesMembersInTheOrderOfTheirCalls)
{
    const auto writes = [](JsonWriter& json) {
        json.put("text", "a");
        json.put("string", std::string("b"));
        json.put("integer", -5);
        json.put("unsigned", 5u);
        json.put("yes", true);
        json.put("no", false);
    };
    EXPECT_EQ(compact(writes), R"({"text":"a","string":"b","integer":-5,"unsigned":5,"yes":true,"no":false})");
    EXPECT_EQ(
        formatted(writes),
        "{\n\t\"text\":\t\"a\",\n\t\"string\":\t\"b\",\n\t\"integer\":\t-5,\n\t\"unsigned\":\t5,\n\t\"yes\":\ttrue,\n"
        "\t\"no\":\tfalse\n}");
}

TEST(AJsonWriter, WritesTheSameKeyAsOftenAsItIsTold)
{
    EXPECT_EQ(compact([](JsonWriter& json) {
                  json.put("a", 1);
                  json.put("a", 2);
              }),
              R"({"a":1,"a":2})");
}

TEST(AJsonWriter, WritesIntegersUpToTheEndsOfTheirTypes)
{
    EXPECT_EQ(compact([](JsonWriter& json) {
                  json.put("a", INT_MAX);
                  json.put("b", INT_MIN);
                  json.put("c", 0);
                  json.put("d", 2147483648u);
                  json.put("e", UINT_MAX);
              }),
              R"({"a":2147483647,"b":-2147483648,"c":0,"d":2147483648,"e":4294967295})");
}

TEST(AJsonWriter, EndsATextAtItsFirstNul)
{
    EXPECT_EQ(compact([](JsonWriter& json) {
                  json.put("a", std::string("before\0behind", 13));
                  json.put("b", std::string("\0", 1));
              }),
              R"({"a":"before","b":""})");
}

TEST(AJsonWriter, EscapesTextsAndLeavesOtherBytesAsTheyAre)
{
    EXPECT_EQ(compact([](JsonWriter& json) { json.put("a", "\"\\/\b\f\n\r\t\x01\x1f \x7f\x80\xff\xc3\xa9"); }),
              "{\"a\":\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f \x7f\x80\xff\xc3\xa9\"}");
}

TEST(AJsonWriter, WritesOnlyWhatItsConditionAllows)
{
    EXPECT_EQ(compact([](JsonWriter& json) {
                  json.putIf(false, "a", 1);
                  json.putIf(true, "b", true);
                  json.putIf(false, "c", "text");
                  json.putIf(true, "d", std::string("text"));
              }),
              R"({"b":true,"d":"text"})");
}

TEST(AJsonWriter, WritesTheHeaderWhateverTheFlagSays)
{
    Scripted message;
    message.writes = [&](JsonWriter& json) { json.header(message); };
    EXPECT_EQ(textOf(message), "{\n\t\"HEADER\":\t\"property\"\n}");
    message.serializeHeader(false);
    EXPECT_EQ(textOf(message), "{\n\t\"HEADER\":\t\"property\"\n}");
}

TEST(AJsonWriter, WritesTheHeaderWhileTheFlagIsSet)
{
    Scripted message;
    message.writes = [&](JsonWriter& json) { json.headerIfSet(message); };
    EXPECT_EQ(textOf(message), "{\n\t\"HEADER\":\t\"property\"\n}");
    message.serializeHeader(false);
    EXPECT_EQ(textOf(message), "{\n}");
}

TEST(AJsonWriter, WritesWhatCJsonPrintsForTheSameMembers)
{
    for (unsigned seed = 1; seed <= 500; ++seed) {
        RandomJson random(seed);
        const Tree tree(cJSON_CreateObject());
        JsonWriter json(PrintStyle::Formatted);
        Scripted message([&](JsonWriter& to) {
            for (unsigned left = random.below(8); left > 0; --left) {
                const std::string text = random.text();
                const int integer = random.integer();
                const bool yes = random.once(2);
                to.put("text", text);
                to.put("integer", integer);
                to.put("boolean", yes);
                cJSON_AddStringToObject(tree.get(), "text", text.c_str());
                cJSON_AddNumberToObject(tree.get(), "integer", integer);
                cJSON_AddBoolToObject(tree.get(), "boolean", yes);
            }
        });
        json.message(message, contractOf<Scripted>());
        ASSERT_EQ(taken(json.take()), taken(cJSON_Print(tree.get()))) << seed;
    }
}

template <class Value, class = void>
struct CanBePut : std::false_type {};
template <class Value>
struct CanBePut<Value, std::void_t<decltype(std::declval<JsonWriter&>().put("key", std::declval<Value>()))>>
    : std::true_type {};

TEST(AJsonWriter, TakesOnlyWhatSaysAsWhatItTravels)
{
    EXPECT_TRUE((CanBePut<int>::value && CanBePut<unsigned>::value && CanBePut<bool>::value));
    EXPECT_TRUE((CanBePut<const char*>::value && CanBePut<std::string>::value && CanBePut<Service*>::value));
    EXPECT_FALSE((CanBePut<double>::value || CanBePut<float>::value || CanBePut<long>::value));
    EXPECT_FALSE((CanBePut<char>::value || CanBePut<unsigned char>::value || CanBePut<long long>::value));
    EXPECT_FALSE((CanBePut<DataType>::value || CanBePut<unsigned long>::value));
}

/// A list of services, each saying its text; one that says nothing stands for a null text.
std::string listOf(const std::vector<const char*>& texts)
{
    ServiceList list;
    for (const char* text : texts)
        list.addService(text ? static_cast<Service*>(new Saying<Service>(text)) : new Silent<Service>);
    const std::string written = textOf(list);
    const std::string before = "{\n\t\"HEADER\":\t\"serviceList\",\n\t\"serviceList\":\t";
    EXPECT_EQ(written.substr(0, before.size()), before);
    EXPECT_EQ(written.substr(written.size() - 2), "\n}");
    return written.substr(before.size(), written.size() - before.size() - 2);
}

TEST(AJsonWriter, SkipsElementsWithoutAJsonTextAtAnyPlace)
{
    EXPECT_EQ(listOf({nullptr}), "[]");
    EXPECT_EQ(listOf({nullptr, "1"}), "[1]");
    EXPECT_EQ(listOf({"1", nullptr}), "[1]");
    EXPECT_EQ(listOf({"1", nullptr, "2"}), "[1, 2]");
    EXPECT_EQ(listOf({nullptr, nullptr, "1", "no JSON", "", "2", "{", nullptr}), "[1, 2]");
}

/// Members around a child that has no text.
std::string around(bool before, bool behind)
{
    Silent<Service> silent;
    return compact([&](JsonWriter& json) {
        if (before) json.put("before", 1);
        json.put("child", static_cast<Service*>(&silent));
        if (behind) json.put("behind", 2);
    });
}

TEST(AJsonWriter, LeavesOutMembersWithoutAJsonTextAtAnyPlace)
{
    EXPECT_EQ(around(false, false), "{}");
    EXPECT_EQ(around(false, true), R"({"behind":2})");
    EXPECT_EQ(around(true, false), R"({"before":1})");
    EXPECT_EQ(around(true, true), R"({"before":1,"behind":2})");
}

TEST(AJsonWriter, GoesBackAlsoAfterAChildWithChildren)
{
    EXPECT_EQ(listOf({R"({"a": [{}, {"b": 1}]})", nullptr, "[]", nullptr}),
              "[{\n\t\t\t\"a\":\t[{\n\t\t\t\t}, {\n"
              "\t\t\t\t\t\"b\":\t1\n\t\t\t\t}]\n\t\t}, []]");
}

TEST(AJsonWriter, GivesATextThatFreeReleasesWhateverCJsonAllocates)
{
    alignas(16) static char arena[1 << 16];
    static std::size_t used;
    used = 0;
    cJSON_Hooks hooks = {[](std::size_t size) -> void* {
                             const std::size_t at = used;
                             used += (size + 15) / 16 * 16;
                             return used <= sizeof arena ? arena + at : nullptr;
                         },
                         [](void*) {}};
    cJSON_InitHooks(&hooks);
    Service service;
    const std::string text = textOf(service);
    const std::string withoutHeader = taken(Serializable::removeHeader(mallocText(R"({"HEADER":"a"})")));
    const bool read = service.deserializeObject(treeOf(R"({"serviceName": "A"})").get());
    cJSON_InitHooks(nullptr);
    EXPECT_THAT(text, testing::StartsWith("{\n\t\"HEADER\":\t\"currentService\",\n\t\""));
    EXPECT_EQ(withoutHeader, "{\n}");
    EXPECT_TRUE(read);
    EXPECT_GT(used, 0u);
}

}  // namespace
}  // namespace OrvuTests
