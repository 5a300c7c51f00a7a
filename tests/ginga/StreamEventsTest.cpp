#include <gtest/gtest.h>

#include "orvu/StreamEvents.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

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
