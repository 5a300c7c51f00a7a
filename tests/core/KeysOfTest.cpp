#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "orvu/Orvu.h"

using namespace Orvu;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace OrvuTests {
namespace {

std::vector<std::string> shownKeys(const std::vector<KeyDescription>& keys)
{
    std::vector<std::string> shown;
    for (const KeyDescription& key : keys)
        shown.push_back(key.key + (key.isRequired ? "!" : ""));
    return shown;
}

TEST(TheKeysOfAType, AreThoseItAsksForInThatOrder)
{
    EXPECT_THAT(shownKeys(keysOf(DataTypeBinaryNIT)),
                ElementsAre("serviceContextId!", "bufferSize!", "buffer!", "timestamp"));
    EXPECT_THAT(shownKeys(keysOf(DataTypeSuccess)), IsEmpty());
    EXPECT_THAT(keysOf(static_cast<DataType>(9999)), IsEmpty());
    EXPECT_THAT(keysOf(DataTypeSiCacheUnavailable), IsEmpty());
}

TEST(TheKeysOfAType, HoldTheKeysOfItsParts)
{
    const std::vector<KeyDescription> keys = keysOf(DataTypeEventInfoList);
    ASSERT_THAT(shownKeys(keys), ElementsAre("serviceContextId", "present", "following", "schedule!", "timestamp"));
    EXPECT_EQ(keys[1].kind, KeyDescription::Object);
    EXPECT_EQ(keys[3].kind, KeyDescription::Objects);
    EXPECT_EQ(shownKeys(keys[1].keys), shownKeys(keys[3].keys));
    EXPECT_THAT(shownKeys(keys[3].keys), Contains("startTime"));
}

TEST(TheKeysOfAType, NameTheWordsThatAreReadBack)
{
    const std::vector<KeyDescription> keys = keysOf(DataTypeTargetAppPerformAction);
    ASSERT_THAT(shownKeys(keys), ElementsAre("canonicalName", "action", "priority"));
    EXPECT_THAT(keys[1].words, ElementsAre("start", "stop"));
    EXPECT_THAT(keys[2].words, ElementsAre("foreground", "background"));
}

TEST(TheKeysOfAType, ThatHoldsItselfEndThere)
{
    const std::vector<KeyDescription> keys = keysOf(DataTypeScreenItem);
    EXPECT_EQ(keys.back().key, "contentList");
    EXPECT_THAT(keys.back().keys, IsEmpty());
}

TEST(TheKeysOfAType, HaveNoNameForAListThatIsReadByItsPlace)
{
    const std::vector<KeyDescription> keys = keysOf(DataTypeEventGroup);
    ASSERT_THAT(shownKeys(keys), ElementsAre("type", ""));
    EXPECT_EQ(keys[1].kind, KeyDescription::Objects);
    EXPECT_THAT(shownKeys(keys[1].keys), ElementsAre("id", "tsId", "networkId", "serviceId"));
}

}  // namespace
}  // namespace OrvuTests
