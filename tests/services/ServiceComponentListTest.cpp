#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/ServiceComponents.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kEmptyList = "{\n\t\"HEADER\":\t\"components\",\n\t\"components\":\t[]\n}";

std::vector<int> pidsOf(const ServiceComponentList& list)
{
    std::vector<int> pids;
    for (const ServiceComponent* component : list.components)
        pids.push_back(component->pid);
    return pids;
}

using Pids = std::vector<int>;

TEST(AServiceComponentList, StartsEmpty)
{
    const ServiceComponentList list;
    EXPECT_EQ(list.getDataType(), 21u);
    EXPECT_TRUE(list.components.empty());
}

TEST(AServiceComponentList, WritesItsHeaderWhateverTheFlagSays)
{
    ServiceComponentList list;
    EXPECT_EQ(textOf(list), kEmptyList);
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(AServiceComponentList, WritesItsComponentsInOrderWithoutTheirHeaders)
{
    ServiceComponentList list;
    list.addComponent(new ServiceComponent);
    list.addComponent(new ServiceComponent);
    list.components[0]->componentTag = 0;
    list.components[0]->pos = new Position(1, 2, 3, 4);
    list.components[1]->componentTag = 0x10;
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"components\",\n"
              "\t\"components\":\t[{\n"
              "\t\t\t\"streamType\":\t-1,\n"
              "\t\t\t\"componentTag\":\t\"0x00\",\n"
              "\t\t\t\"pid\":\t-1,\n"
              "\t\t\t\"pos\":\t{\n"
              "\t\t\t\t\"x\":\t1,\n"
              "\t\t\t\t\"y\":\t2,\n"
              "\t\t\t\t\"w\":\t3,\n"
              "\t\t\t\t\"h\":\t4\n"
              "\t\t\t}\n"
              "\t\t}, {\n"
              "\t\t\t\"streamType\":\t-1,\n"
              "\t\t\t\"componentTag\":\t\"0x10\",\n"
              "\t\t\t\"pid\":\t-1,\n"
              "\t\t\t\"ISO639languageCode\":\t\"\"\n"
              "\t\t}]\n"
              "}");
    EXPECT_EQ(textOf(*list.components[0]).find("HEADER"), std::string::npos);
}

TEST(AServiceComponentList, SkipsComponentsWithoutAJsonText)
{
    ServiceComponentList list;
    list.addComponent(new Silent<ServiceComponent>);
    list.addComponent(new Saying<ServiceComponent>("no JSON"));
    list.addComponent(nullptr);
    list.components.push_back(nullptr);
    EXPECT_EQ(list.components.size(), 3u);
    EXPECT_EQ(textOf(list), kEmptyList);
    EXPECT_EQ(taken(list.components[0]->ServiceComponent::serialize()).find("HEADER"), std::string::npos);
}

TEST(AServiceComponentList, CarriesWhateverJsonAComponentWrites)
{
    ServiceComponentList list;
    list.addComponent(new Saying<ServiceComponent>("[1, null]"));
    list.addComponent(new Saying<ServiceComponent>(R"({"HEADER":"mine"} and more)"));
    EXPECT_EQ(
        textOf(list),
        "{\n\t\"HEADER\":\t\"components\",\n\t\"components\":\t[[1, null], {\n\t\t\t\"HEADER\":\t\"mine\"\n\t\t}]\n}");
}

TEST(AServiceComponentList, DeletesItsComponents)
{
    int destroyed = 0;
    {
        ServiceComponentList list;
        list.addComponent(new Counted<ServiceComponent>(destroyed));
        list.components.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(AServiceComponentList, ReadsItsComponents)
{
    ServiceComponentList list;
    EXPECT_TRUE(list.deserialize(R"({"HEADER": "components", "COMPONENTS": [
        {"pid": 1, "componentTag": "0x05", "pos": {"x": 7}}, {"pid": 2}], "components": [{"pid": 3}]})"));
    ASSERT_EQ(pidsOf(list), (Pids{1, 2}));
    EXPECT_EQ(list.components[0]->componentTag, 5);
    ASSERT_NE(list.components[0]->pos, nullptr);
    EXPECT_EQ(list.components[0]->pos->x, 7);
    EXPECT_EQ(textOf(*list.components[1]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AServiceComponentList, MakesAComponentOfAnyElementAndAppendsIt)
{
    ServiceComponentList list;
    EXPECT_TRUE(list.deserialize(R"({"components": [{"pid": 1}, 5, null, "text", [{"pid": 4}]]})"));
    EXPECT_TRUE(list.deserialize(R"({"components": {"a": {"pid": 2}, "b": {"pid": 3}}})"));
    EXPECT_EQ(pidsOf(list), (Pids{1, -1, -1, -1, -1, 2, 3}));
}

TEST(AServiceComponentList, HasNoComponentsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "true", "5", R"("text")", "[]", "{}"}) {
        ServiceComponentList list;
        EXPECT_TRUE(list.deserialize((R"({"components": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(list.components.empty()) << value;
    }
}

TEST(AServiceComponentList, IsNotReadWithoutItsKey)
{
    ServiceComponentList list;
    list.addComponent(new ServiceComponent);
    for (const char* text :
         {"{}", R"({"component": []})", "[]", "5", "null", "", "{", "no JSON", R"([{"components": []}])"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    EXPECT_FALSE(list.deserialize(nullptr));
    unsigned char error = 77;
    EXPECT_FALSE(list.deserialize(R"({"components": []})", error));
    EXPECT_EQ(error, 77);
    EXPECT_EQ(list.components.size(), 1u);
}

TEST(AServiceComponentList, LetsTheExceptionsOfItsComponentsPass)
{
    ServiceComponentList list;
    EXPECT_THROW(list.deserialize(R"({"components": [{"pid": 1}, {"pid": 2, "componentTag": "0xffffffff"}, {}]})"),
                 std::out_of_range);
    EXPECT_EQ(pidsOf(list), (Pids{1}));  // what was read before stays
    EXPECT_THROW(list.deserialize(R"({"components": [{"componentTag": "0x"}]})"), std::invalid_argument);
    EXPECT_THROW(list.deserialize(R"({"components": [{"pos": {"w": "ab%"}}]})"), std::invalid_argument);
}

TEST(AServiceComponentList, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<ServiceComponentList>);
    EXPECT_FALSE(std::is_copy_assignable_v<ServiceComponentList>);
}

TEST(AServiceComponentList, WritesAndReadsManyComponents)
{
    constexpr int kMany = 100000;
    ServiceComponentList list;
    for (int i = 0; i < kMany; ++i) {
        list.addComponent(new ServiceComponent);
        list.components.back()->componentTag = i;
    }
    ServiceComponentList read;
    EXPECT_TRUE(read.deserialize(textOf(list).c_str()));
    ASSERT_EQ(read.components.size(), 100000u);
    EXPECT_EQ(read.components.front()->componentTag, 0);
    EXPECT_EQ(read.components.back()->componentTag, kMany - 1);
}

}  // namespace
}  // namespace OrvuTests
