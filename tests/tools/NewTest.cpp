#include <gtest/gtest.h>
#include <string>

#include "tools/Tool.h"

namespace OrvuTests {
namespace {

TEST(ANewText, IsFilledAndHasItsKeysInTheirOrder)
{
    const Ended ended = run(orvu({"new", "bounds"}));
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "{\n  \"w\": 1920,\n  \"h\": 1080\n}\n");
}

TEST(ANewText, IsTheLeastThatReadsWhenAsked)
{
    EXPECT_EQ(run(orvu({"new", "eventInfoList", "--least"})).out,
              "{\n  \"HEADER\": \"eventInfoList\",\n  \"schedule\": []\n}\n");
    EXPECT_EQ(run(orvu({"new", "targetApp", "--least"})).out,
              "{\n  \"HEADER\": \"targetApp\",\n  \"filters\": [\n    {\n      \"scheme\": \"https\"\n    }\n  ]\n}\n");
}

TEST(ANewText, IsRefusedForATypeThatHasNone)
{
    const Ended unknown = run(orvu({"new", "serviceTim"}));
    EXPECT_EQ(unknown.code, 64);
    EXPECT_EQ(unknown.err, "orvu: serviceTim: no such type; did you mean \"serviceTime\"?\n");
    const Ended textless = run(orvu({"new", "siCacheUnavailable"}));
    EXPECT_EQ(textless.code, 64);
    EXPECT_EQ(textless.err, "orvu: siCacheUnavailable: the type has no text of its own\n");
}

}  // namespace
}  // namespace OrvuTests
