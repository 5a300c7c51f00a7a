#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "orvu/Codecs.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Formats = std::vector<DrmFormat>;

constexpr const char* kEmptySystem = R"({"systemId":"","drmName":"","drmVersion":"","formatsSupported":[]})";
TEST(ADrmSystem, WritesItsKeysInTheAgreedOrderWithoutAHeader)
{
    DrmSystem system;
    system.systemId = "urn:1";
    system.drmName = "N";
    system.drmVersion = "2";
    system.addFormatSupported(DrmFormatDash);
    system.addFormatSupported(DrmFormatDash);
    system.addFormatSupported(DrmFormatUnknown);
    system.addFormatSupported(static_cast<DrmFormat>(6));
    constexpr const char* kText = R"({"systemId":"urn:1","drmName":"N","drmVersion":"2",)"
                                  R"("formatsSupported":["dash","dash","Unknown",""]})";
    EXPECT_EQ(textOf(system), kText);
    system.serializeHeader(false);
    EXPECT_EQ(textOf(system), kText);
}

TEST(ADrmSystem, NeverWritesItsSchemes)
{
    DrmSystem system;
    system.addSchemeSupported(DrmSchemeHttps);
    system.addSchemeSupported(DrmSchemeHttps);
    EXPECT_EQ(system.schemesSupported.size(), 2u);
    EXPECT_EQ(textOf(system), kEmptySystem);
    DrmSystem read;
    EXPECT_TRUE(read.deserialize(textOf(system).c_str()));
    EXPECT_TRUE(read.schemesSupported.empty());
}

TEST(ADrmSystem, NeverReadsSchemes)
{
    DrmSystem system;
    EXPECT_TRUE(system.deserialize(R"({"formatsSupported": [], "schemesSupported": ["https"]})"));
    EXPECT_TRUE(system.schemesSupported.empty());
}

TEST(ADrmSystem, ReadsItsFormatsAfterThoseItHolds)
{
    DrmSystem system;
    EXPECT_TRUE(
        system.deserialize(R"({"FORMATSSUPPORTED": ["mp4", "MP4", null, 5, "Unknown"], "formatsSupported": ["hls"]})"));
    EXPECT_TRUE(system.deserialize(R"({"formatsSupported": {"a": "pes"}})"));
    EXPECT_EQ(system.formatsSupported, (Formats{DrmFormatMp4, DrmFormatUnknown, DrmFormatUnknown, DrmFormatPes}));
}

TEST(ADrmSystem, HasNoFormatsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("mp4")", "[]", "{}"}) {
        DrmSystem system;
        EXPECT_TRUE(system.deserialize((R"({"formatsSupported": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_TRUE(system.formatsSupported.empty()) << value;
    }
}

TEST(ADrmSystem, IsNotReadWithoutFormatsAndKeepsWhatWasReadBefore)
{
    DrmSystem system;
    EXPECT_FALSE(system.deserialize(R"({"systemId": "a", "drmName": "b", "drmVersion": "c", "schemesSupported": []})"));
    EXPECT_EQ(system.systemId + system.drmName + system.drmVersion, "abc");
    for (const char* text : {"{}", "[]", "5", "null", R"([{"formatsSupported": []}])"})
        EXPECT_FALSE(system.deserialize(text)) << text;
}

}  // namespace
}  // namespace OrvuTests
