#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::vector<std::string> namesOf(const ServiceList& list)
{
    std::vector<std::string> names;
    for (const Service* service : list.services)
        names.push_back(service->serviceName);
    return names;
}

using Names = std::vector<std::string>;

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

}  // namespace
}  // namespace OrvuTests
