#include <gtest/gtest.h>

#include "orvu/StreamEvents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AStreamEventRequest, StartsWithNothingGiven)
{
    const StreamEventRequest request;
    EXPECT_EQ(request.componentTag, 0);
    EXPECT_EQ(request.carouselId, 0);
    EXPECT_EQ(request.port, 0);
    EXPECT_EQ(request.protocol + request.handle + request.host + request.url, "");
}

TEST(AStreamEventRequest, WritesItsHandleAndNothingThatIsNotGiven)
{
    StreamEventRequest request;
    EXPECT_EQ(request.getDataType(), 57u);
    EXPECT_EQ(textOf(request), "{\n\t\"HEADER\":\t\"streamEventRequest\",\n\t\"handle\":\t\"\"\n}");
    request.serializeHeader(false);
    request.componentTag = 0;
    request.carouselId = -1;
    request.port = 0;
    EXPECT_EQ(textOf(request), "{\n\t\"handle\":\t\"\"\n}");
}

TEST(AStreamEventRequest, WritesItsKeysInTheAgreedOrder)
{
    StreamEventRequest request;
    request.componentTag = 1;
    request.carouselId = 2;
    request.protocol = "tcp";
    request.handle = "h";
    request.host = "host";
    request.url = "url";
    request.port = 3;
    EXPECT_EQ(textOf(request),
              "{\n\t\"HEADER\":\t\"streamEventRequest\",\n\t\"handle\":\t\"h\",\n\t\"componentTag\":\t1,\n"
              "\t\"carouselId\":\t2,\n\t\"url\":\t\"url\",\n\t\"host\":\t\"host\",\n\t\"port\":\t3,\n"
              "\t\"protocol\":\t\"tcp\"\n}");
}

TEST(AStreamEventDispose, CarriesItsHandleAsANumber)
{
    StreamEventDispose dispose;
    EXPECT_EQ(textOf(dispose), "{\n\t\"HEADER\":\t\"streamEventDispose\",\n\t\"handle\":\t0\n}");
    EXPECT_TRUE(dispose.deserialize(R"({"handle": 7})"));
    EXPECT_EQ(dispose.handle, 7);
    EXPECT_FALSE(dispose.deserialize(R"({"handle": "8"})"));
    EXPECT_EQ(dispose.handle, 7);
}

}  // namespace
}  // namespace OrvuTests
