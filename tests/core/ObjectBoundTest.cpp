#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>

#include "messages/core/CheckedText.h"
#include "messages/core/Contract.h"
#include "messages/core/NewMessage.h"
#include "orvu/Orvu.h"
#include "support/FailingMemory.h"
#include "support/Messages.h"

using namespace Orvu;

/// \file
/// The objects that one read makes take at most 16 MiB and twice the text. Two bytes of a text can make an object of
/// several hundred.

namespace OrvuTests {
namespace {

/// A class of the catalogue.
struct CatalogueClass {
    const char* wireName;
    Serializable* (*make)();
    const Contract& (*contract)();
};

void PrintTo(const CatalogueClass& it, std::ostream* out)
{
    *out << it.wireName;
}

class AClassOfTheCatalogue : public testing::TestWithParam<CatalogueClass> {};

TEST_P(AClassOfTheCatalogue, CountsWhatItsConstructorMakes)
{
    const CountedMemory memory;
    const std::unique_ptr<Serializable> message(GetParam().make());
    EXPECT_EQ(memory.bytes(), GetParam().contract().size);
}

template <class Message, DataType type>
Serializable* make()
{
    return newMessage<Message>(type);
}

constexpr CatalogueClass kClasses[] = {
#define ORVU_ROW_AS(Type, Class, wireName, ...) {wireName, make<Class, Type>, contractOf<Class>},
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
};
INSTANTIATE_TEST_SUITE_P(Named, AClassOfTheCatalogue, testing::ValuesIn(kClasses),
                         [](const auto& it) { return it.param.wireName; });

constexpr std::size_t kRoom = 16u << 20;

/// A text whose items make objects, and the message that reads it.
struct Greedy {
    const char* name;
    std::string before;
    std::string item;
    std::string behind;
    std::size_t size;  ///< Of what an item makes.
    std::function<std::unique_ptr<Serializable>()> message;
    std::function<std::size_t(Serializable&)> held;  ///< How many the message holds.

    std::string text(std::size_t items) const
    {
        std::string text = before;
        text.reserve(before.size() + items * (item.size() + 1) + behind.size());
        for (std::size_t i = 0; i < items; ++i) {
            if (i > 0) text += ',';
            text += item;
        }
        return text + behind;
    }

    /// How many items there is room for. Each makes the text, and the room, larger as well.
    std::size_t mostItems() const
    {
        const std::size_t around = before.size() + behind.size() - 1;
        return (kRoom + 2 * around) / (size - 2 * (item.size() + 1));
    }
};

void PrintTo(const Greedy& it, std::ostream* out)
{
    *out << it.name;
}

template <class List, class Items>
Greedy greedy(const char* name, std::string before, std::string item, std::string behind, std::size_t size,
              Items List::*items)
{
    return {name,
            std::move(before),
            std::move(item),
            std::move(behind),
            size,
            [] { return std::make_unique<List>(); },
            [items](Serializable& message) { return (static_cast<List&>(message).*items).size(); }};
}

const Greedy kGreedy[] = {
    greedy("schedule", R"({"schedule":[)", "1", "]}", contractOf<EventInfo>().size, &EventInfoList::schedule),
    greedy("boundServices", R"({"boundServices":[)", "1", "]}", contractOf<ServiceBindTokens>().size,
           &ServiceBindTokensList::services),
    greedy("serviceList", R"({"serviceList":[)", "1", "]}", contractOf<Service>().size, &ServiceList::services),
    greedy("players", R"({"players":[)", R"({"schemesSupported":[],"formatsSupported":[]})", "]}",
           contractOf<MediaPlayer>().size, &MediaPlayerList::players),
    greedy("displayLayers", R"({"platformCapabilities":{"displayLayers":[)", "1",
           R"(],"colorimetry":[],"dynamicRange":[],"inputDevices":[],"networkInterfaces":[]}})",
           contractOf<DisplayLayer>().size, &PlatformCapabilities::displayLayers),
    greedy("interfaces", R"({"interfaces":[)", "1", "]}", contractOf<NCLNode>().size, &NCLNode::interfaces),
    greedy("deletionItens", R"({"clientApplicationList":[],"deletionItens":[)", R"("")", "]}", sizeof(std::string),
           &ClientApplicationList::deletionIds),
};

class AGreedyText : public testing::TestWithParam<Greedy> {};

TEST_P(AGreedyText, IsReadUpToTheBound)
{
    const std::size_t most = GetParam().mostItems();
    const std::unique_ptr<Serializable> message = GetParam().message();
    EXPECT_TRUE(message->deserialize(GetParam().text(most).c_str()));
    EXPECT_EQ(GetParam().held(*message), most);
}

TEST_P(AGreedyText, FailsBeyondItAndLeavesWhatWasReadBefore)
{
    const std::size_t most = GetParam().mostItems();
    const std::unique_ptr<Serializable> message = GetParam().message();
    EXPECT_FALSE(message->deserialize(GetParam().text(most + 1).c_str()));
    EXPECT_EQ(GetParam().held(*message), most);
}

TEST_P(AGreedyText, TakesNoMoreThanItsRoom)
{
    const std::unique_ptr<Serializable> message = GetParam().message();
    const std::string text = GetParam().text(1u << 20);
    const CountedMemory memory;
    EXPECT_FALSE(message->deserialize(text.c_str()));
    // Lists of pointers, or of texts, grow by doubling: all their blocks together are four times their last items.
    const std::size_t items = GetParam().held(*message);
    EXPECT_LE(memory.bytes(), kRoom + 2 * text.size() + 4 * items * sizeof(std::string));
}

TEST_P(AGreedyText, LeavesRoomForTheNextRead)
{
    const std::unique_ptr<Serializable> message = GetParam().message();
    const std::size_t most = GetParam().mostItems();
    for (int i = 1; i <= 2; ++i) {
        EXPECT_TRUE(message->deserialize(GetParam().text(most).c_str()));
        EXPECT_EQ(GetParam().held(*message), i * most);
    }
}

INSTANTIATE_TEST_SUITE_P(Under, AGreedyText, testing::ValuesIn(kGreedy), [](const auto& it) { return it.param.name; });

TEST(AGreedyText, CountsChildrenThatAreDropped)
{
    MediaPlayerList list;
    Greedy text = greedy("", R"({"players":[)", "1", "]}", contractOf<MediaPlayer>().size, &MediaPlayerList::players);
    EXPECT_TRUE(list.deserialize(text.text(text.mostItems()).c_str()));
    EXPECT_FALSE(list.deserialize(text.text(text.mostItems() + 1).c_str()));
    EXPECT_TRUE(list.players.empty());
}

TEST(AGreedyText, CountsTokensThatAreSkipped)
{
    ServiceBindTokens tokens;
    Greedy text = greedy("", R"({"bindTokens":[)", R"("")", "]}", sizeof(std::string), &ServiceBindTokens::bindTokens);
    EXPECT_TRUE(tokens.deserialize(text.text(text.mostItems()).c_str()));
    EXPECT_FALSE(tokens.deserialize(text.text(text.mostItems() + 1).c_str()));
    EXPECT_TRUE(tokens.bindTokens.empty());
}

TEST(AGreedyText, CountsTheKeysOfAKeyset)
{
    GingaKeyset keyset;
    Greedy text = greedy("", R"({"keyset":[)", R"("")", "]}", sizeof(std::string), &GingaKeyset::keys);
    EXPECT_TRUE(keyset.deserialize(text.text(text.mostItems()).c_str()));
    EXPECT_FALSE(keyset.deserialize(text.text(text.mostItems() + 1).c_str()));
}

TEST(AGreedyText, CountsPartsThatAreDropped)
{
    BinaryDataMultipart message;
    Greedy text = greedy("", R"({"binaryDataMultipart":[)", "1", "]}", contractOf<BinaryData>().size,
                         &BinaryDataMultipart::parts);
    EXPECT_TRUE(message.deserialize(text.text(text.mostItems()).c_str()));
    EXPECT_FALSE(message.deserialize(text.text(text.mostItems() + 1).c_str()));
}

TEST(AGreedyText, CountsObjectsOnEveryLevel)
{
    Greedy text = greedy("", R"({"interfaces":[{"id":"a"},{"interfaces":[{"interfaces":[)", "1", "]}]}]}",
                         contractOf<NCLNode>().size, &NCLNode::interfaces);
    const std::size_t most = text.mostItems() - 3;  // the objects around them; what they take of the room is left over
    NCLNode node;
    EXPECT_TRUE(node.deserialize(text.text(most).c_str()));
    EXPECT_EQ(node.interfaces.at(1)->interfaces.at(0)->interfaces.size(), most);
    NCLNode other;
    EXPECT_FALSE(other.deserialize(text.text(most + 1).c_str()));
    ASSERT_EQ(other.interfaces.size(), 1u);  // the second is not whole
    EXPECT_EQ(other.interfaces[0]->id, "a");
}

TEST(AGreedyText, IsAFaultOfTheWholeAndNotOfAChild)
{
    NCLNode node;
    Greedy text = greedy("", R"({"id":"before","interfaces":[{"interfaces":[)", "1", R"(]}],"appid":"behind"})",
                         contractOf<NCLNode>().size, &NCLNode::interfaces);
    EXPECT_FALSE(node.deserialize(text.text(text.mostItems() + 1).c_str()));
    EXPECT_EQ(node.id, "before");
    EXPECT_TRUE(node.interfaces.empty());
}

std::string emptyArrays(std::size_t count)
{
    std::string text = R"({"name":"n","value":"v","list":[)";
    for (std::size_t i = 0; i < count; ++i)
        text += i == 0 ? "[]" : ",[]";
    return text + "]}";
}

TEST(ATextOfManyObjectsAndArrays, IsRefusedAbove2097152OfThem)
{
    Property property;
    EXPECT_TRUE(property.deserialize(emptyArrays(2097152 - 2).c_str()));
    EXPECT_EQ(property.value, "v");
    Property other;
    EXPECT_FALSE(other.deserialize(emptyArrays(2097152 - 1).c_str()));
    EXPECT_EQ(other.name, "");
}

}  // namespace
}  // namespace OrvuTests
