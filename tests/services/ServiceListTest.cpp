#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kEmptyList = "{\n\t\"HEADER\":\t\"serviceList\",\n\t\"serviceList\":\t[]\n}";

Service* serviceNamed(const std::string& name)
{
    auto* const service = new Service;
    service->serviceName = name;
    return service;
}

std::vector<std::string> namesOf(const ServiceList& list)
{
    std::vector<std::string> names;
    for (const Service* service : list.services)
        names.push_back(service->serviceName);
    return names;
}

using Names = std::vector<std::string>;

TEST(AServiceList, StartsEmpty)
{
    const ServiceList list;
    EXPECT_EQ(list.getDataType(), 9u);
    EXPECT_TRUE(list.services.empty());
}

TEST(AServiceList, WritesAnEmptyArray)
{
    ServiceList list;
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(AServiceList, WritesItsHeaderWhateverTheFlagSays)
{
    ServiceList list;
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(AServiceList, WritesItsServicesInOrderWithoutTheirHeaders)
{
    ServiceList list;
    list.addService(serviceNamed("A"));
    list.addService(serviceNamed("B"));
    list.services[1]->serviceContextId = "1.2.01";
    list.services[1]->transportStreamId = 1;
    list.services[1]->originalNetworkId = 2;
    list.services[1]->serviceId = 3;
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"serviceList\",\n"
              "\t\"serviceList\":\t[{\n"
              "\t\t\t\"serviceContextId\":\t\"\",\n"
              "\t\t\t\"serviceName\":\t\"A\",\n"
              "\t\t\t\"transportStreamId\":\t0,\n"
              "\t\t\t\"originalNetworkId\":\t0,\n"
              "\t\t\t\"serviceId\":\t0\n"
              "\t\t}, {\n"
              "\t\t\t\"serviceContextId\":\t\"1.2.01\",\n"
              "\t\t\t\"serviceName\":\t\"B\",\n"
              "\t\t\t\"transportStreamId\":\t1,\n"
              "\t\t\t\"originalNetworkId\":\t2,\n"
              "\t\t\t\"serviceId\":\t3\n"
              "\t\t}]\n"
              "}");
}

TEST(AServiceList, SwitchesTheHeadersOfItsServicesOffForGood)
{
    ServiceList list;
    list.addService(serviceNamed("A"));
    list.addService(new Silent<Service>);
    textOf(list);
    EXPECT_EQ(textOf(*list.services[0]).find("HEADER"), std::string::npos);
    EXPECT_EQ(taken(list.services[1]->Service::serialize()).find("HEADER"), std::string::npos);
}

TEST(AServiceList, SkipsServicesWithoutAJsonText)
{
    ServiceList list;
    list.addService(new Silent<Service>);
    list.addService(new Saying<Service>(""));
    list.addService(new Saying<Service>("{"));
    list.addService(new Saying<Service>("no JSON"));
    EXPECT_EQ(textOf(list), kEmptyList);
}

TEST(AServiceList, CarriesWhateverJsonAServiceWrites)
{
    ServiceList list;
    list.addService(new Saying<Service>("5"));
    list.addService(new Saying<Service>("[1,2]"));
    list.addService(new Saying<Service>(R"({"HEADER":"mine"})"));
    list.addService(new Saying<Service>("null and more"));
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"serviceList\",\n"
              "\t\"serviceList\":\t[5, [1, 2], {\n"
              "\t\t\t\"HEADER\":\t\"mine\"\n"
              "\t\t}, null]\n"
              "}");
}

TEST(AServiceList, AddsNoNull)
{
    ServiceList list;
    list.addService(nullptr);
    EXPECT_TRUE(list.services.empty());
}

TEST(AServiceList, PassesOverANullThatAnApplicationPutThere)
{
    ServiceList list;
    list.services.push_back(nullptr);
    EXPECT_EQ(textOf(list), kEmptyList);
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{}]})"));
    EXPECT_EQ(list.services.size(), 2u);
}

TEST(AServiceList, DeletesItsServices)
{
    int destroyed = 0;
    {
        ServiceList list;
        list.addService(new Counted<Service>(destroyed));
        list.services.push_back(new Counted<Service>(destroyed));
        list.services.push_back(nullptr);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(AServiceList, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<ServiceList>);
    EXPECT_FALSE(std::is_copy_assignable_v<ServiceList>);
}

TEST(AServiceList, ReadsItsServices)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"HEADER": "serviceList", "serviceList": [
        {"serviceContextId": "1.2.01", "serviceName": "A",
         "transportStreamId": 1, "originalNetworkId": 2, "serviceId": 3},
        {"serviceName": "B"}]})"));
    ASSERT_EQ(namesOf(list), (Names{"A", "B"}));
    EXPECT_EQ(list.services[0]->serviceContextId, "1.2.01");
    EXPECT_EQ(list.services[0]->transportStreamId, 1);
    EXPECT_EQ(list.services[0]->originalNetworkId, 2);
    EXPECT_EQ(list.services[0]->serviceId, 3);
    EXPECT_EQ(list.services[1]->serviceId, 0);
}

TEST(AServiceList, ReadsServicesWhoseHeaderFlagIsSet)
{
    ServiceList list;
    ASSERT_TRUE(list.deserialize(R"({"serviceList": [{}]})"));
    EXPECT_EQ(textOf(*list.services[0]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AServiceList, MakesAServiceOfAnyElement)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{"serviceName": "A"}, 5, {}]})"));
    EXPECT_EQ(namesOf(list), (Names{"A", "", ""}));
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [null, true, "text", [], [{"serviceName": "B"}]]})"));
    EXPECT_EQ(namesOf(list), (Names{"A", "", "", "", "", "", "", ""}));
}

TEST(AServiceList, AppendsToWhatItHolds)
{
    ServiceList list;
    list.addService(serviceNamed("A"));
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{"serviceName": "B"}]})"));
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{"serviceName": "C"}]})"));
    EXPECT_TRUE(list.deserialize(R"({"serviceList": []})"));
    EXPECT_EQ(namesOf(list), (Names{"A", "B", "C"}));
}

TEST(AServiceList, WalksTheMembersOfAnObjectToo)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"serviceList": {"a": {"serviceName": "A"}, "b": {"serviceName": "B"}}})"));
    EXPECT_EQ(namesOf(list), (Names{"A", "B"}));
}

TEST(AServiceList, HasNoServicesUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "true", "5", R"("text")", "[]", "{}"}) {
        ServiceList list;
        EXPECT_TRUE(list.deserialize((R"({"serviceList": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(list.services.empty()) << value;
    }
}

TEST(AServiceList, FindsItsKeyInAnyLetterCase)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"SERVICELIST": [{"SERVICENAME": "A"}]})"));
    EXPECT_EQ(namesOf(list), (Names{"A"}));
}

TEST(AServiceList, TakesTheFirstOfEqualKeys)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{"serviceName": "A"}], "serviceList": [{"serviceName": "B"}]})"));
    EXPECT_EQ(namesOf(list), (Names{"A"}));
}

TEST(AServiceList, IsNotReadWithoutItsKey)
{
    ServiceList list;
    list.addService(serviceNamed("A"));
    for (const char* text : {"{}", R"({"services": []})", "[]", "5", "null", R"([{"serviceList": []}])"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    EXPECT_EQ(namesOf(list), (Names{"A"}));
}

TEST(AServiceList, IsNotReadFromWhatIsNoJson)
{
    ServiceList list;
    EXPECT_FALSE(list.deserialize(nullptr));
    for (const char* text : {"", "{", R"({"serviceList": [{"serviceName": "A"}, ]})"})
        EXPECT_FALSE(list.deserialize(text)) << text;
    EXPECT_TRUE(list.services.empty());
}

TEST(AServiceList, IgnoresWhatFollowsItsText)
{
    ServiceList list;
    EXPECT_TRUE(list.deserialize(R"({"serviceList": [{"serviceName": "A"}]} and more)"));
    EXPECT_EQ(namesOf(list), (Names{"A"}));
}

TEST(AServiceList, GivesNoReasons)
{
    ServiceList list;
    unsigned char error = 77;
    EXPECT_FALSE(list.deserialize(R"({"serviceList": [{}]})", error));
    EXPECT_EQ(error, 77);
    EXPECT_TRUE(list.services.empty());
}

/// The processor time in which a list of that many services is written and read.
double secondsFor(int count)
{
    const std::clock_t start = std::clock();
    ServiceList list;
    for (int i = 0; i < count; ++i)
        list.addService(new Service);
    ServiceList read;
    EXPECT_TRUE(read.deserialize(taken(list.serialize()).c_str()));
    EXPECT_EQ(read.services.size(), static_cast<std::size_t>(count));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(AServiceList, IsWrittenAndReadInATimeThatGrowsWithItsSize)
{
    const double few = std::min({secondsFor(10000), secondsFor(10000), secondsFor(10000)});
    EXPECT_LT(secondsFor(100000), 40 * few);  // ten times as long as a rule; the square would be a hundred
}

TEST(AServiceList, ReadsManyServices)
{
    std::string text = R"({"serviceList": [{"serviceId": 0})";
    for (int i = 1; i < 20000; ++i)
        text += R"(, {"serviceId": )" + std::to_string(i) + "}";
    ServiceList list;
    EXPECT_TRUE(list.deserialize((text + "]}").c_str()));
    ASSERT_EQ(list.services.size(), 20000u);
    EXPECT_EQ(list.services.back()->serviceId, 19999);
}

}  // namespace
}  // namespace OrvuTests
