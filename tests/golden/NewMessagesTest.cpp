#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <type_traits>

#include "golden/Fields.h"
#include "orvu/Orvu.h"
#include "support/Messages.h"

/// What every message class has in common as an object: what its fields are when it is new, that it is copied whole or
/// not at all, and that its functions set and show the fields of which they have their names.

namespace OrvuTests {
namespace {

using Orvu::Serializable;

template <class Row>
std::string nameOf(const testing::TestParamInfo<Row>& info)
{
    return info.param.owner + "_" + info.param.name;
}

/// The fields that are neither empty nor null, zero, false or unknown in a new message.
const std::map<std::string, std::string> kNotEmpty = {{"Bounds.h", "-1"},
                                                      {"Bounds.w", "-1"},
                                                      {"MediaPlayer.state", std::to_string(Orvu::StatusTypeIdle)},
                                                      {"Position.h", "720"},
                                                      {"Position.w", "1280"},
                                                      {"ServiceBindTokens.fullService", "1"},
                                                      {"ServiceBindTokensList.reservedFlag", "1"},
                                                      {"ServiceCompTagAction.vol", "-1"},
                                                      {"ServiceComponent.componentTag", "-1"},
                                                      {"ServiceComponent.componentType", "-1"},
                                                      {"ServiceComponent.dataComponentId", "-1"},
                                                      {"ServiceComponent.pid", "-1"},
                                                      {"ServiceComponent.streamContent", "-1"},
                                                      {"ServiceComponent.streamType", "-1"},
                                                      {"ServiceComponent.vol", "-1"},
                                                      {"StreamPidsResponse.mimeType", "video/mp2t"},
                                                      {"TargetApp.priority", "1"},
                                                      {"TargetAppList.writeCanonicalNames", "1"},
                                                      {"TargetAppPerformAction.priority", "1"}};

/// The children that a new message already holds.
const std::set<std::string> kMade = {"ComponentGroupDescriptor.caUnit", "DisplayLayer.bounds",
                                     "MediaPlayer.codecsSupported",     "MediaPlayer.pos",
                                     "PersistProperty.property",        "PlatformCapabilities.physicalScreenSize",
                                     "ServiceBindTokens.service"};

class AFieldOfANewMessage : public testing::TestWithParam<Field> {};

TEST_P(AFieldOfANewMessage, IsEmptyUnlessItIsListed)
{
    const std::string name = GetParam().owner + "." + GetParam().name;
    if (name == "ClientApplication.bornTime") return;  // the clock's
    const auto message = sampleOf(GetParam().owner).empty();
    const std::string value = GetParam().shownIn(*message);
    const auto listed = kNotEmpty.find(name);
    if (listed != kNotEmpty.end()) {
        EXPECT_EQ(value, listed->second);
    } else if (kMade.count(name) != 0) {
        EXPECT_EQ(value.front(), '{') << value;
    } else {
        EXPECT_TRUE(value.empty() || value == "null" || value.find_first_not_of("0;") == std::string::npos) << value;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AFieldOfANewMessage, testing::ValuesIn(fields()), nameOf<Field>);

class AnAccessor : public testing::TestWithParam<Function> {};

TEST_P(AnAccessor, SetsOrShowsTheFieldOfItsNameAlone)
{
    const Function& accessor = GetParam();
    for (const Field& field : fieldsOf(accessor.owner)) {
        const auto message = sampleOf(accessor.owner).empty();
        const bool isOwn = field.name == accessor.description;
        const std::string before = accessor.set ? field.shownIn(*message) : accessor.shown(*message);
        accessor.set ? accessor.set(*message) : field.changeIn(*message);
        const std::string after = accessor.set ? field.shownIn(*message) : accessor.shown(*message);
        EXPECT_EQ(before != after, isOwn) << field.name;
        EXPECT_TRUE(!isOwn || after == field.shownIn(*message)) << field.name;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AnAccessor, testing::ValuesIn(accessors()), nameOf<Function>);

/// A message class and how it is copied; a class that owns others is not.
struct Copying {
    std::string name;
    std::unique_ptr<Serializable> (*copy)(Serializable&);
    void (*assign)(Serializable& to, const Serializable& from);
};

template <class Message>
Copying copying(const std::string& name)
{
    Copying row{name, nullptr, nullptr};
    if constexpr (std::is_copy_constructible_v<Message>) {
        row.copy = [](Serializable& message) -> std::unique_ptr<Serializable> {
            return std::make_unique<Message>(static_cast<Message&>(message));
        };
    }
    if constexpr (std::is_copy_assignable_v<Message>) {
        row.assign = [](Serializable& to, const Serializable& from) {
            static_cast<Message&>(to) = static_cast<const Message&>(from);
        };
    }
    return row;
}

std::vector<Copying> copyings()
{
    std::map<std::string, Copying> rows = {{"NCLDocument", copying<Orvu::NCLDocument>("NCLDocument")}};
#define ORVU_ROW_AS(Type, Class, ...) rows.emplace(#Class, copying<Orvu::Class>(#Class));
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
    std::vector<Copying> all;
    for (const auto& [name, row] : rows)
        all.push_back(row);
    return all;
}

/// Those that own others and are copied with them.
const std::set<std::string> kCopiedWithAll = {"PersistProperty", "ServiceBindTokens"};

void PrintTo(const Copying& row, std::ostream* out)
{
    *out << row.name;
}

class AMessageClass : public testing::TestWithParam<Copying> {
protected:
    static std::unique_ptr<Serializable> filled() { return sampleOf(GetParam().name).filled(); }

    /// What a message writes; a received value, which is never written, shows its fields instead.
    static std::string shown(Serializable& message)
    {
        std::string all = textOf(message);
        for (const Field& field : fieldsOf(GetParam().name))
            all += "\n" + field.name + ": " + field.shownIn(message);
        return all;
    }

    static Messages childrenOf(Serializable& message)
    {
        Messages children;
        for (const Field& field : fieldsOf(GetParam().name))
            field.childrenIn(children, message);
        return children;
    }
};

TEST_P(AMessageClass, IsCopiedUnlessItOwnsOthers)
{
    const std::vector<Field> own = fieldsOf(GetParam().name);
    const bool ownsOthers = std::any_of(own.begin(), own.end(), [](const Field& field) { return field.isOwner; });
    const bool isCopied = !ownsOthers || kCopiedWithAll.count(GetParam().name) != 0;
    EXPECT_EQ(GetParam().copy != nullptr, isCopied);
    EXPECT_EQ(GetParam().assign != nullptr, isCopied && GetParam().name != "ServiceBindTokens");
}

TEST_P(AMessageClass, IsCopiedWithEveryFieldAndWithItsHeaderFlagSet)
{
    if (!GetParam().copy) return;
    const auto message = filled();
    message->serializeHeader(false);
    const auto copy = GetParam().copy(*message);
    const Messages own = childrenOf(*message);
    for (Serializable* const child : childrenOf(*copy))
        EXPECT_EQ(std::count(own.begin(), own.end(), child), 0);
    EXPECT_EQ(shown(*copy), shown(*filled()));
}

TEST_P(AMessageClass, IsAssignedEveryFieldButTheHeaderFlag)
{
    if (!GetParam().assign) return;
    for (const bool flag : {true, false}) {
        const auto message = filled();
        message->serializeHeader(!flag);
        const auto other = sampleOf(GetParam().name).empty();
        other->serializeHeader(flag);
        GetParam().assign(*other, *message);
        const auto expected = filled();
        expected->serializeHeader(flag);
        EXPECT_EQ(shown(*other), shown(*expected));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AMessageClass, testing::ValuesIn(copyings()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace OrvuTests
