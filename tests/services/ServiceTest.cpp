#include <climits>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

Service aService()
{
    Service service;
    service.serviceContextId = "1.2.01";
    service.serviceName = "Canal 1";
    service.transportStreamId = 1;
    service.originalNetworkId = 65535;
    service.serviceId = 59168;
    return service;
}

constexpr const char* kServiceWithoutHeader =
    "{\n"
    "\t\"serviceContextId\":\t\"1.2.01\",\n"
    "\t\"serviceName\":\t\"Canal 1\",\n"
    "\t\"transportStreamId\":\t1,\n"
    "\t\"originalNetworkId\":\t65535,\n"
    "\t\"serviceId\":\t59168\n"
    "}";

TEST(AService, WritesAnyTextAndNumber)
{
    Service service;
    service.serializeHeader(false);
    service.serviceContextId = "\"\\\x01\n";
    service.serviceName = std::string("\xc3\x89\xff/\0cut", 8);
    service.transportStreamId = INT_MAX;
    service.originalNetworkId = INT_MIN;
    service.serviceId = -1;
    EXPECT_EQ(textOf(service),
              "{\n"
              "\t\"serviceContextId\":\t\"\\\"\\\\\\u0001\\n\",\n"
              "\t\"serviceName\":\t\"\xc3\x89\xff/\",\n"
              "\t\"transportStreamId\":\t2147483647,\n"
              "\t\"originalNetworkId\":\t-2147483648,\n"
              "\t\"serviceId\":\t-1\n"
              "}");
}

TEST(AService, NeverChecksItsLocator)
{
    Service service;
    EXPECT_TRUE(service.deserialize(R"({"serviceContextId": "no locator"})"));
    EXPECT_EQ(service.serviceContextId, "no locator");
}

TEST(AClone, HasEverythingOfItsService)
{
    Service service = aService();
    const std::unique_ptr<Service> clone(service.clone());
    EXPECT_NE(clone.get(), &service);
    EXPECT_EQ(clone->getDataType(), DataTypeCurrentService);
    EXPECT_EQ(textOf(*clone), textOf(service));
}

TEST(AClone, HasTheHeaderFlagOfItsService)
{
    Service service = aService();
    service.serializeHeader(false);
    const std::unique_ptr<Service> clone(service.clone());
    EXPECT_EQ(textOf(*clone), kServiceWithoutHeader);
}

TEST(AClone, IsIndependentOfItsService)
{
    Service service = aService();
    const std::unique_ptr<Service> clone(service.clone());
    service.serviceName = "B";
    service.serializeHeader(false);
    EXPECT_EQ(clone->serviceName, "Canal 1");
    EXPECT_EQ(textOf(*clone).substr(0, 11), "{\n\t\"HEADER\"");
}

}  // namespace
}  // namespace OrvuTests
