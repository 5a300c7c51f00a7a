#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/RandomJson.h"
#include "core/TestMessages.h"
#include "orvu/PairingScreens.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

/// \file
/// A child whose class is the library's is written into its container's text and read from it; one of an
/// application's class goes through its virtual functions and a text of its own. Nobody may see a difference.

namespace OrvuTests {
namespace {

std::string anyText(RandomJson& random)
{
    std::string text = random.text();
    if (random.once(6)) text += std::string("\0behind", 7);
    return text;
}

template <class Child>
std::unique_ptr<Child> randomService(RandomJson& random)
{
    auto service = std::make_unique<Child>();
    service->serviceContextId = anyText(random);
    service->serviceName = anyText(random);
    service->transportStreamId = random.integer();
    service->originalNetworkId = random.integer();
    service->serviceId = random.integer();
    service->serializeHeader(random.once(2));
    return service;
}

template <class Child>
std::unique_ptr<Child> randomItem(RandomJson& random, int levels)
{
    auto item = std::make_unique<Child>();
    item->type = anyText(random);
    item->enabled = random.once(2);
    item->focused = random.once(2);
    item->visible = random.once(2);
    item->checked = random.once(2) ? "" : random.once(2) ? "true" : "TRUE";
    if (random.once(4)) item->content = anyText(random);
    item->serializeHeader(random.once(2));
    for (unsigned left = levels > 0 ? random.below(4) : 0; left > 0; --left)
        item->addItem(randomItem<Child>(random, levels - 1).release());
    return item;
}

template <class Child>
std::string writtenList(unsigned seed)
{
    RandomJson random(seed);
    ServiceList list;
    for (unsigned left = random.below(5); left > 0; --left)
        list.addService(randomService<Child>(random).release());
    return textOf(list);
}

template <class Child>
std::string writtenHolder(unsigned seed)
{
    RandomJson random(seed);
    return textOf(*std::make_unique<Holder>(randomService<Child>(random).release()));
}

template <class Child>
std::string writtenItem(unsigned seed)
{
    RandomJson random(seed);
    return textOf(*randomItem<Child>(random, 4));
}

template <class Child>
std::string writtenDescription(unsigned seed)
{
    RandomJson random(seed);
    ScreenDescription description;
    for (unsigned left = random.below(4); left > 0; --left)
        description.addItem(randomItem<Child>(random, 3).release());
    return textOf(description);
}

constexpr unsigned kSeeds = 1000;

TEST(BothRoads, WriteTheSameServiceList)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        const std::string text = writtenList<Service>(seed);
        EXPECT_EQ(writtenList<Inheriting<Service>>(seed), text) << seed;
        EXPECT_EQ(writtenList<Forwarding<Service>>(seed), text) << seed;
    }
}

TEST(BothRoads, WriteTheSameHeldChild)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        const std::string text = writtenHolder<Service>(seed);
        EXPECT_EQ(writtenHolder<Inheriting<Service>>(seed), text) << seed;
        EXPECT_EQ(writtenHolder<Forwarding<Service>>(seed), text) << seed;
    }
}

TEST(BothRoads, WriteTheSameScreenItem)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        const std::string text = writtenItem<ScreenItem>(seed);
        EXPECT_EQ(writtenItem<Inheriting<ScreenItem>>(seed), text) << seed;
        EXPECT_EQ(writtenItem<Forwarding<ScreenItem>>(seed), text) << seed;
    }
}

TEST(BothRoads, WriteTheSameScreenDescription)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        const std::string text = writtenDescription<ScreenItem>(seed);
        EXPECT_EQ(writtenDescription<Inheriting<ScreenItem>>(seed), text) << seed;
        EXPECT_EQ(writtenDescription<Forwarding<ScreenItem>>(seed), text) << seed;
    }
}

Tree anyService(RandomJson& random)
{
    return random.anyObject({"HEADER", "serviceContextId", "serviceName", "transportStreamId", "ORIGINALNETWORKID",
                             "serviceId", "serviceId"});
}

cJSON* anyItems(RandomJson& random, int levels);

Tree anyItem(RandomJson& random, int levels)
{
    if (random.once(8)) return random.anyValue();
    std::vector<std::string> keys = {"HEADER", "type", "visible", "enabled", "focused", "isSelected", "checked"};
    if (random.once(4)) keys.emplace_back("content");
    Tree object = random.anyObject(keys);
    if (levels > 0) cJSON_AddItemToObject(object.get(), "contentList", anyItems(random, levels - 1));
    return object;
}

cJSON* anyItems(RandomJson& random, int levels)
{
    const bool isObject = random.once(5);
    cJSON* const items = isObject ? cJSON_CreateObject() : cJSON_CreateArray();
    for (unsigned left = random.below(4); left > 0; --left) {
        cJSON* const item = anyItem(random, levels).release();
        isObject ? cJSON_AddItemToObject(items, "any", item) : cJSON_AddItemToArray(items, item);
    }
    return items;
}

/// The text of {key: value}, without blanks.
std::string objectText(const char* key, cJSON* value)
{
    const Tree object(cJSON_CreateObject());
    cJSON_AddItemToObject(object.get(), key, value);
    return taken(cJSON_PrintUnformatted(object.get()));
}

TEST(BothRoads, ReadTheSameServices)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        cJSON* const array = cJSON_CreateArray();
        for (int i = 0; i < 4; ++i)
            cJSON_AddItemToArray(array, anyService(random).release());
        const std::string text = objectText("serviceList", array);
        ServiceList list;
        ASSERT_TRUE(list.deserialize(text.c_str()));
        ASSERT_EQ(list.services.size(), 4u);
        const Tree tree = treeOf(text);
        for (int i = 0; i < 4; ++i) {
            Service alone;
            ASSERT_TRUE(alone.deserializeObject(cJSON_GetArrayItem(tree->child, i)));
            list.services[i]->serializeHeader(true);
            EXPECT_EQ(textOf(*list.services[i]), textOf(alone)) << text;
        }
    }
}

TEST(BothRoads, ReadTheSameHeldChild)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const std::string text = objectText("child", anyService(random).release());
        Holder exact;
        Holder inheriting(new Inheriting<Service>);
        Holder forwarding(new Forwarding<Service>);
        ASSERT_TRUE(exact.deserialize(text.c_str()));
        ASSERT_TRUE(inheriting.deserialize(text.c_str()));
        ASSERT_TRUE(forwarding.deserialize(text.c_str()));
        EXPECT_EQ(textOf(exact), textOf(inheriting)) << text;
        EXPECT_EQ(textOf(exact), textOf(forwarding)) << text;
    }
}

/// That an item read inside its container is what it reads as alone, and its children likewise.
void expectReadAsAlone(const ScreenItem& read, cJSON* item)
{
    ScreenItem alone;
    ASSERT_TRUE(alone.deserializeObject(item));
    EXPECT_EQ(read.type, alone.type);
    EXPECT_EQ(read.enabled, alone.enabled);
    EXPECT_EQ(read.focused, alone.focused);
    EXPECT_EQ(read.visible, alone.visible);
    EXPECT_EQ(read.checked, alone.checked);
    EXPECT_EQ(read.content, alone.content);
    ASSERT_EQ(read.items.size(), alone.items.size());
    for (std::size_t i = 0; i < read.items.size(); ++i)
        expectReadAsAlone(*read.items[i],
                          cJSON_GetArrayItem(cJSON_GetObjectItem(item, "contentList"), static_cast<int>(i)));
}

TEST(BothRoads, ReadTheSameScreenItems)
{
    for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const std::string text = objectText("screen_items", anyItems(random, 3));
        SCOPED_TRACE(text);
        const Tree tree = treeOf(text);
        ScreenDescription description;
        ASSERT_TRUE(description.deserialize(text.c_str()));
        ASSERT_EQ(static_cast<int>(description.items.size()), cJSON_GetArraySize(tree->child));
        for (std::size_t i = 0; i < description.items.size(); ++i)
            expectReadAsAlone(*description.items[i], cJSON_GetArrayItem(tree->child, static_cast<int>(i)));
    }
}

TEST(BothRoads, TurnANestedNumberIntoWhatItsTextReads)
{
    for (const char* number : {"2.9999999999999996", "1e400", "-1e400", "2147483648", "0.1", "1e-400"}) {
        const std::string text = R"({"serviceId": )" + std::string(number) + "}";
        Service alone;
        alone.serviceId = 4711;
        ASSERT_TRUE(alone.deserializeObject(treeOf(text).get()));
        Holder holder(new Service);
        holder.child->serviceId = 4711;
        ASSERT_TRUE(holder.deserialize((R"({"child": )" + text + "}").c_str()));
        EXPECT_EQ(holder.child->serviceId, alone.serviceId) << number;
    }
}

}  // namespace
}  // namespace OrvuTests
