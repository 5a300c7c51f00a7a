#include <climits>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include "orvu/EventDescriptors.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// The text of a descriptor, which no header flag changes.
template <class Descriptor>
std::string textWithAnyFlag(Descriptor& descriptor)
{
    const std::string text = textOf(descriptor);
    descriptor.serializeHeader(false);
    EXPECT_EQ(textOf(descriptor), text);
    descriptor.serializeHeader(true);
    return text;
}

using Nibbles = std::vector<int>;

Nibbles nibblesOf(const ContentDescriptor& descriptor)
{
    return Nibbles(std::begin(descriptor.content), std::end(descriptor.content));
}

TEST(AContentDescriptor, WritesItsFourNumbers)
{
    ContentDescriptor descriptor;
    for (int i = 0; i < 4; ++i)
        descriptor.content[i] = i == 3 ? INT_MIN : i;
    EXPECT_EQ(textWithAnyFlag(descriptor), R"({"contentDescription":[0,1,2,-2147483648]})");
}

/// What a descriptor of 6, 7, 8, 9 holds once it has read the text.
Nibbles readInto6789(const std::string& text, bool success)
{
    ContentDescriptor descriptor;
    for (int i = 0; i < 4; ++i)
        descriptor.content[i] = 6 + i;
    EXPECT_EQ(descriptor.deserialize(text.c_str()), success) << text;
    return nibblesOf(descriptor);
}

TEST(AContentDescriptor, ReadsAListOfFour)
{
    EXPECT_EQ(readInto6789(R"({"contentDescription": [1, 2, 3, 4]})", true), (Nibbles{1, 2, 3, 4}));
    EXPECT_EQ(readInto6789(R"({"HEADER": "x", "CONTENTDESCRIPTION": {"a": 1, "b": 2, "c": 3, "d": 4}} more)", true),
              (Nibbles{1, 2, 3, 4}));
    EXPECT_EQ(readInto6789(R"({"contentDescription": [1, 2, 3, 4], "contentDescription": [5, 5, 5, 5]})", true),
              (Nibbles{1, 2, 3, 4}));
}

TEST(AContentDescriptor, TakesTheIntegerValueOfEachItem)
{
    EXPECT_EQ(readInto6789(R"({"contentDescription": [2.9, true, false, 1e400]})", true), (Nibbles{2, 1, 0, INT_MAX}));
    EXPECT_EQ(readInto6789(R"({"contentDescription": ["5", null, [5], -2147483649]})", true),
              (Nibbles{0, 0, 0, INT_MIN}));
}

TEST(AContentDescriptor, LeavesAListOfAnotherLength)
{
    for (const char* value : {"[1, 2, 3]", "[1, 2, 3, 4, 5]", "[]", "{}", "5", "null", R"("1234")", "true"})
        EXPECT_EQ(readInto6789(R"({"contentDescription": )" + std::string(value) + "}", true), (Nibbles{6, 7, 8, 9}))
            << value;
}

TEST(AContentDescriptor, IsNotReadWithoutItsKey)
{
    for (const char* text : {"{}", "[1, 2, 3, 4]", "5", "null", R"({"content": [1, 2, 3, 4]})", "", "{", "no JSON"})
        EXPECT_EQ(readInto6789(text, false), (Nibbles{6, 7, 8, 9})) << text;
    ContentDescriptor descriptor;
    EXPECT_FALSE(descriptor.deserialize(nullptr));
    unsigned char error = 77;
    EXPECT_FALSE(descriptor.deserialize(R"({"contentDescription": [1, 2, 3, 4]})", error));
    EXPECT_EQ(error, 77);
}

TEST(ALinkageDescriptor, NeverReadsItsDataBack)
{
    LinkageDescriptor linkage;
    linkage.data = "kept";
    EXPECT_TRUE(linkage.deserialize(R"({"data": "abc", "type": 2})"));
    EXPECT_EQ(linkage.type, 2);
    EXPECT_EQ(linkage.data, "kept");
}

TEST(ASeriesDescriptor, ReadsNoTextForItsUrl)
{
    SeriesDescriptor series;
    series.url = 5;
    EXPECT_TRUE(series.deserialize(R"({"url": "http://a/b", "id": 1})"));
    EXPECT_EQ(series.url, 5);
    EXPECT_EQ(series.id, 1);
}

template <class Descriptor>
class ADescriptor : public testing::Test {};

using Descriptors = testing::Types<ContentDescriptor, LinkageDescriptor, HyperlinkDescriptor, SeriesDescriptor,
                                   EventGroup, ComponentGroup>;
TYPED_TEST_SUITE(ADescriptor, Descriptors, );

TYPED_TEST(ADescriptor, IsEmptyWhenNew)
{
    EXPECT_TRUE(TypeParam().isEmpty());
}

TYPED_TEST(ADescriptor, IsEmptyAfterReadingNull)
{
    TypeParam descriptor;
    descriptor.deserialize("null");
    EXPECT_TRUE(descriptor.isEmpty());
}

/// Whether a descriptor that read `text` is empty.
template <class Descriptor>
bool isEmptyAfter(const std::string& text)
{
    Descriptor descriptor;
    EXPECT_TRUE(descriptor.deserialize(text.c_str())) << text;
    return descriptor.isEmpty();
}

/// That none of these numbers leaves a descriptor empty.
template <class Descriptor>
void expectNotEmptyWithAnyOf(const std::vector<std::string>& keys)
{
    for (const std::string& key : keys)
        EXPECT_FALSE(isEmptyAfter<Descriptor>("{\"" + key + "\": 7}")) << key;
}

TEST(AContentDescriptor, IsNotEmptyWithAnyOfItsNumbers)
{
    for (const std::string numbers : {"7, 0, 0, 0", "0, 7, 0, 0", "0, 0, 7, 0", "0, 0, 0, 7"})
        EXPECT_FALSE(isEmptyAfter<ContentDescriptor>("{\"contentDescription\": [" + numbers + "]}")) << numbers;
}

TEST(ALinkageDescriptor, IsNotEmptyWithAnyOfItsFields)
{
    expectNotEmptyWithAnyOf<LinkageDescriptor>({"tsId", "networkId", "serviceId", "type"});
    LinkageDescriptor descriptor;
    descriptor.data = "0x00";
    EXPECT_FALSE(descriptor.isEmpty());
}

TEST(AHyperlinkDescriptor, IsNotEmptyWithAnyOfItsFields)
{
    expectNotEmptyWithAnyOf<HyperlinkDescriptor>({"type", "destinationType", "tsId", "networkId", "eventId",
                                                  "componentTag", "moduleId", "serviceId", "contentId"});
    EXPECT_FALSE(isEmptyAfter<HyperlinkDescriptor>(R"({"url": "http://example.com"})"));
}

TEST(ASeriesDescriptor, IsNotEmptyWithAnyOfItsFields)
{
    expectNotEmptyWithAnyOf<SeriesDescriptor>(
        {"id", "url", "repeatLabel", "programPattern", "episodeNumber", "lastEpisodeNumber"});
    EXPECT_FALSE(isEmptyAfter<SeriesDescriptor>(R"({"name": "Novela das Oito"})"));
}

TEST(AGroup, IsNotEmptyWithATypeOrAnItem)
{
    EXPECT_FALSE(isEmptyAfter<EventGroup>(R"({"type": 7, "eventGroupDescriptor": []})"));
    EXPECT_FALSE(isEmptyAfter<EventGroup>(R"({"type": 0, "eventGroupDescriptor": [{}]})"));
    EXPECT_FALSE(isEmptyAfter<ComponentGroup>(R"({"type": 7, "componentGroupDescriptor": []})"));
    EXPECT_FALSE(isEmptyAfter<ComponentGroup>(R"({"type": 0, "componentGroupDescriptor": [{}]})"));
}

}  // namespace
}  // namespace OrvuTests
