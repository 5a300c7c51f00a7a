#include <climits>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "orvu/ServiceComponents.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr const char* kDefaultText =
    "{\n"
    "\t\"HEADER\":\t\"serviceComponent\",\n"
    "\t\"streamType\":\t-1,\n"
    "\t\"componentTag\":\t\"0xffffffff\",\n"
    "\t\"pid\":\t-1\n"
    "}";

/// A component in which every field is known, without "HEADER".
std::unique_ptr<ServiceComponent> componentTagged(int tag)
{
    auto component = std::make_unique<ServiceComponent>();
    component->serializeHeader(false);
    component->streamType = 27;
    component->componentTag = tag;
    component->pid = 273;
    component->state = "started";
    component->streamContent = 1;
    component->componentType = 0xb3;
    component->vol = 80;
    component->ISO639languageCode = "por";
    component->pos = new Position(1, 2, 3, 4);
    component->dataComponentId = 8;
    return component;
}

TEST(AServiceComponent, OfAudioWritesItsLanguageAlsoWhileEmpty)
{
    ServiceComponent component;
    component.componentTag = 0x12;
    component.serializeHeader(false);
    EXPECT_EQ(textOf(component),
              "{\n\t\"streamType\":\t-1,\n\t\"componentTag\":\t\"0x12\",\n\t\"pid\":\t-1,\n"
              "\t\"ISO639languageCode\":\t\"\"\n}");
}

bool writes(const char* key, ServiceComponent& component)
{
    return cJSON_GetObjectItemCaseSensitive(treeOf(textOf(component)).get(), key) != nullptr;
}

TEST(AServiceComponent, WritesItsPositionForVideoTagsOnly)
{
    for (const int tag : {0x00, 0x01, 0x0f})
        EXPECT_TRUE(writes("pos", *componentTagged(tag))) << tag;
    for (const int tag : {0x10, 0x37, 0x38, INT_MAX, -1, -2, INT_MIN})
        EXPECT_FALSE(writes("pos", *componentTagged(tag))) << tag;
    ServiceComponent without;
    without.componentTag = 0;
    EXPECT_FALSE(writes("pos", without));
}

TEST(AServiceComponent, WritesItsLanguageForAudioAndCaptionTagsOnly)
{
    for (const int tag : {0x10, 0x11, 0x30, 0x37})
        EXPECT_TRUE(writes("ISO639languageCode", *componentTagged(tag))) << tag;
    for (const int tag : {0x00, 0x0f, 0x38, INT_MAX, -1, INT_MIN})
        EXPECT_FALSE(writes("ISO639languageCode", *componentTagged(tag))) << tag;
}

TEST(AServiceComponent, WritesNumbersFromZeroOnWhereMinusOneIsUnknown)
{
    ServiceComponent component;
    component.streamContent = component.componentType = component.vol = component.dataComponentId = 0;
    component.streamType = INT_MIN;
    component.pid = INT_MAX;
    EXPECT_EQ(textOf(component),
              "{\n"
              "\t\"HEADER\":\t\"serviceComponent\",\n"
              "\t\"streamType\":\t-2147483648,\n"
              "\t\"componentTag\":\t\"0xffffffff\",\n"
              "\t\"pid\":\t2147483647,\n"
              "\t\"streamContent\":\t\"0x00\",\n"
              "\t\"componentType\":\t\"0x00\",\n"
              "\t\"vol\":\t0,\n"
              "\t\"dataComponentId\":\t0\n"
              "}");
    component.streamType = component.pid = -1;
    component.streamContent = component.componentType = component.vol = component.dataComponentId = INT_MIN;
    EXPECT_EQ(textOf(component), kDefaultText);
}

TEST(AServiceComponent, WritesAnyPositionFieldByField)
{
    for (Position* const pos :
         {static_cast<Position*>(new Silent<Position>), static_cast<Position*>(new Saying<Position>("5"))}) {
        ServiceComponent component;
        component.componentTag = 0;
        component.serializeHeader(false);
        component.pos = pos;
        EXPECT_EQ(textOf(component),
                  "{\n\t\"streamType\":\t-1,\n\t\"componentTag\":\t\"0x00\",\n\t\"pid\":\t-1,\n"
                  "\t\"pos\":\t{\n\t\t\"x\":\t0,\n\t\t\"y\":\t0,\n\t\t\"w\":\t1280,\n\t\t\"h\":\t720\n\t}\n}");
    }
}

template <class Exception>
void expectThrown(const char* value)
{
    for (const std::string key : {"componentTag", "streamContent", "componentType"}) {
        const std::string text = R"({"streamType": 5, ")" + key + "\": " + value + R"(, "dataComponentId": 9})";
        ServiceComponent component;
        EXPECT_THROW(component.deserialize(text.c_str()), Exception) << text;
        EXPECT_EQ(component.streamType, 5);
        EXPECT_EQ(component.dataComponentId, -1);
        EXPECT_EQ(component.componentTag + component.streamContent + component.componentType, -3);
        EXPECT_THROW(component.deserializeObject(treeOf(text).get()), Exception) << text;
    }
}

TEST(AServiceComponent, LetsTheExceptionsOfNumberTextsPass)
{
    expectThrown<std::invalid_argument>(R"("")");
    expectThrown<std::invalid_argument>(R"("  ")");
    expectThrown<std::invalid_argument>(R"("0x")");
    expectThrown<std::out_of_range>(R"("0xffffffff")");
    expectThrown<std::out_of_range>(R"("2147483648")");
}

TEST(AServiceComponent, WithoutATagCannotBeReadBack)
{
    ServiceComponent component;
    const std::string text = textOf(component);
    EXPECT_THROW(component.deserialize(text.c_str()), std::out_of_range);
}

TEST(AServiceComponent, ReadsItsPositionIntoANewOne)
{
    ServiceComponent component;
    EXPECT_TRUE(component.deserialize(R"({"pos": {"x": 10, "w": "50%"}})"));
    ASSERT_NE(component.pos, nullptr);
    EXPECT_EQ(component.pos->x, 10);
    EXPECT_EQ(component.pos->w, 640);
    EXPECT_EQ(component.pos->h, 720);
}

TEST(AServiceComponent, ReadsItsPositionIntoTheOneItHolds)
{
    ServiceComponent component;
    Position* const held = component.pos = new Position(1, 2, 3, 4);
    EXPECT_TRUE(component.deserialize(R"({"POS": {"x": 10}, "pos": {"y": 20}})"));
    EXPECT_TRUE(component.deserialize("{}"));
    EXPECT_EQ(component.pos, held);
    EXPECT_EQ(held->x, 10);
    EXPECT_EQ(held->y, 2);
}

TEST(AServiceComponent, MakesAPositionOfAnyValue)
{
    for (const char* value : {"null", "5", "true", R"("50%")", "[1]", "{}"}) {
        ServiceComponent component;
        EXPECT_TRUE(component.deserialize((R"({"pos": )" + std::string(value) + "}").c_str())) << value;
        ASSERT_NE(component.pos, nullptr) << value;
        EXPECT_EQ(component.pos->w, 1280) << value;
    }
}

TEST(AServiceComponent, KeepsABadPositionPartlyFilled)
{
    ServiceComponent component;
    EXPECT_TRUE(component.deserialize(R"({"pos": {"x": 10, "y": "bad", "w": 30}, "dataComponentId": 9})"));
    ASSERT_NE(component.pos, nullptr);
    EXPECT_EQ(component.pos->x, 10);
    EXPECT_EQ(component.pos->y, -1);
    EXPECT_EQ(component.pos->w, 1280);
    EXPECT_EQ(component.dataComponentId, 9);
}

TEST(AServiceComponent, LetsTheExceptionsOfItsPositionPass)
{
    ServiceComponent component;
    EXPECT_THROW(component.deserialize(R"({"pos": {"x": "ab%"}})"), std::invalid_argument);
    EXPECT_THROW(component.deserialize(R"({"pos": {"x": "1e400%"}})"), std::out_of_range);
    EXPECT_NE(component.pos, nullptr);
}

TEST(AServiceComponent, KeepsItsNumbersWhereANestedTextHasNone)
{
    ServiceComponent component;
    component.streamType = component.componentTag = 5;
    EXPECT_TRUE(
        component.deserializeObject(treeOf(R"({"streamType": 1e400, "componentTag": -1e400, "pid": 1})").get()));
    EXPECT_EQ(component.streamType, 5);
    EXPECT_EQ(component.componentTag, 5);
    EXPECT_EQ(component.pid, 1);
}

TEST(AServiceComponent, DeletesItsPosition)
{
    int destroyed = 0;
    {
        ServiceComponent component;
        component.pos = new Counted<Position>(destroyed);
    }
    EXPECT_EQ(destroyed, 1);
}

}  // namespace
}  // namespace OrvuTests
