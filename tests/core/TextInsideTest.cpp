#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

#include "orvu/ClientApplications.h"
#include "orvu/EventDescriptors.h"
#include "orvu/Keyset.h"
#include "orvu/MediaPlayers.h"
#include "orvu/PairingScreens.h"
#include "orvu/Properties.h"
#include "orvu/ServiceComponents.h"
#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

/// \file
/// A message may read a text that one of its own fields holds, which the read may change or release: nothing shows that
/// it was not a text elsewhere. The address sanitizer watches.

namespace OrvuTests {
namespace {

/// Reads `text` into a new message, from the field that `fieldOf` gives, and into another from a copy of it: whether
/// both came to the same result and write the same, which is in `written` then. Both have the text in that field
/// before.
template <class Message, class FieldOf>
testing::AssertionResult readsItsOwn(const std::string& text, FieldOf fieldOf, std::string& written)
{
    Message inside;
    Message outside;
    std::string& field = fieldOf(inside);
    field = text;
    fieldOf(outside) = text;
    const bool expected = outside.deserialize(text.c_str());
    const bool result = inside.deserialize(field.c_str());
    written = textOf(inside);
    if (result != expected) return testing::AssertionFailure() << "read: " << result << ", not " << expected;
    if (written != textOf(outside)) return testing::AssertionFailure() << "wrote " << written;
    return testing::AssertionSuccess();
}

TEST(ATextInAField, ReadsAsElsewhereWhenItIsLong)
{
    std::string written;
    const std::string name(1000, 'n');
    for (const std::string& text :
         {R"({"name": ")" + name + R"(", "value": "v"})",  // changed last
          R"({"value": "v", "name": ")" + name + R"("})", R"({"value": "\u0041\n", "name": ")" + name + R"("})",
          R"({"value": ")" + name + name + R"(", "name": "n"})", R"({"name": ")" + name + R"("})"}) {  // stays
        EXPECT_TRUE(readsItsOwn<Property>(
            text, [](auto& property) -> auto& { return property.value; }, written));
        EXPECT_TRUE(readsItsOwn<Property>(
            text, [](auto& property) -> auto& { return property.name; }, written));
    }
    EXPECT_EQ(written, "{\n\t\"HEADER\":\t\"property\",\n\t\"name\":\t\"" + name + "\",\n\t\"value\":\t\"\"\n}");
}

TEST(ATextInAField, ReadsAsElsewhereWhenItIsShorterThanAStringObject)
{
    std::string written;
    for (const char* text :
         {R"({"value":"a"})", R"({"name":"a"})", R"({"name":"\n"})", R"({"name":1})", "{}", "5", "{"}) {
        EXPECT_TRUE(readsItsOwn<Property>(
            text, [](auto& property) -> auto& { return property.value; }, written));
        EXPECT_TRUE(readsItsOwn<Property>(
            text, [](auto& property) -> auto& { return property.name; }, written));
    }
}

TEST(ATextInAField, ReadsAsElsewhereFromAPlaceWithinIt)
{
    Property property;
    property.value = R"(garbage{"name":"n","value":"v"})";
    EXPECT_TRUE(property.deserialize(property.value.c_str() + 7));
    EXPECT_EQ(property.name, "n");
    EXPECT_EQ(property.value, "v");
    EXPECT_FALSE(property.deserialize(property.value.c_str() + 1));  // nothing but its NUL
}

TEST(ATextInAField, ReadsAsElsewhereWhetherTheFieldIsReadFirstOrLast)
{
    constexpr char kText[] =
        R"({"serviceContextId": "1.2.01", "serviceName": "A", "serviceId": 5, "originalNetworkId": 7})";
    std::string written;
    EXPECT_TRUE(readsItsOwn<Service>(
        kText, [](auto& service) -> auto& { return service.serviceContextId; }, written));
    EXPECT_NE(written.find("\"serviceId\":\t5"), std::string::npos);
    EXPECT_TRUE(readsItsOwn<Service>(
        kText, [](auto& service) -> auto& { return service.serviceName; }, written));
    EXPECT_NE(written.find("\"serviceContextId\":\t\"1.2.01\""), std::string::npos);
    EXPECT_NE(written.find("\"originalNetworkId\":\t7"), std::string::npos);
}

TEST(ATextInAField, ReadsAsElsewhereWhenTheFieldIsNeverRead)
{
    std::string written;
    EXPECT_TRUE(readsItsOwn<LinkageDescriptor>(R"({"data": "x", "tsId": 1, "type": 2, "serviceId": 3})",
                                               [](auto& linkage) -> auto& { return linkage.data; }, written));
    EXPECT_NE(written.find("\"type\":2"), std::string::npos);
}

TEST(ATextInAField, ReadsAsElsewhereWhenAFaultFollows)
{
    QrCodeScreen screen("", "");
    screen.displayName = R"({"displayName": "a name that is longer than a string object", "qrCodeData": 5})";
    EXPECT_FALSE(screen.deserialize(screen.displayName.c_str()));
    EXPECT_EQ(screen.displayName, "a name that is longer than a string object");
}

TEST(ATextInAChild, ReadsAsElsewhere)
{
    std::string written;
    for (const char* text :
         {R"({"serviceContextId": "1.2.01", "bindTokens": ["a", "b", "a"]})",
          R"({"bindTokens": ["a", "b"], "serviceContextId": "1.2.01 and more than fits a string object"})",
          R"({"service": {"serviceContextId": "1.2.01", "serviceName": "A"}, "bindTokens": ["a"]})"}) {
        EXPECT_TRUE(readsItsOwn<ServiceBindTokens>(
            text, [](auto& tokens) -> auto& { return tokens.service->serviceContextId; }, written));
        EXPECT_NE(written.find("1.2.01"), std::string::npos);
        EXPECT_NE(written.find("\"a\""), std::string::npos);
    }
}

TEST(ATextInAListOfTexts, ReadsAsElsewhereThoughTheListGrows)
{
    const auto token = [](auto& tokens) -> auto&
    {
        return tokens.bindTokens.empty() ? tokens.bindTokens.emplace_back() : tokens.bindTokens[0];
    };
    const auto id = [](auto& list) -> auto&
    {
        return list.deletionIds.empty() ? list.deletionIds.emplace_back() : list.deletionIds[0];
    };
    const auto key = [](auto& keyset) -> auto&
    {
        return keyset.keys.empty() ? keyset.keys.emplace_back() : keyset.keys[0];
    };
    std::string many;
    for (int i = 0; i < 100; ++i)
        many += '"' + std::to_string(i) + R"(",)";
    std::string written;
    EXPECT_TRUE(readsItsOwn<ServiceBindTokens>(R"({"bindTokens": [)" + many + R"("end"], "serviceContextId": "1"})",
                                               token, written));
    EXPECT_NE(written.find("\"99\", \"end\"]"), std::string::npos);
    EXPECT_TRUE(readsItsOwn<ClientApplicationList>(
        R"({"deletionItens": [)" + many + R"("end"], "clientApplicationList": [{"clientId": "c", "bornTime": 1}]})", id,
        written));
    EXPECT_NE(written.find("\"99\", \"end\"]"), std::string::npos);
    EXPECT_TRUE(readsItsOwn<GingaKeyset>(R"({"keyset": [)" + many + R"("end"], "releaseKeyset": true})", key, written));
    EXPECT_NE(written.find("\"99\", \"end\"]"), std::string::npos);
    EXPECT_NE(written.find("\"releaseKeyset\":\ttrue"), std::string::npos);
    EXPECT_TRUE(readsItsOwn<GingaKeyset>(R"({"keyset":["a"]})", key, written));  // lies in the list itself
}

TEST(ATextInAListOfChildren, ReadsAsElsewhereThoughTheListGrows)
{
    const auto content = [](auto& item) -> auto&
    {
        if (item.items.empty()) item.addItem(new ScreenItem);
        return item.items[0]->content;
    };
    std::string written;
    EXPECT_TRUE(readsItsOwn<ScreenItem>(
        R"({"type": "menu", "contentList": [{"type": "a", "content": "A"}, {"type": "b"}],
            "checked": true, "enabled": true})",
        content, written));
    EXPECT_NE(written.find("\"b\""), std::string::npos);
    EXPECT_TRUE(readsItsOwn<ScreenItem>(
        R"({"checked": true, "type": "menu", "contentList": [{"type": "a"}], "enabled": true, "focused": true})",
        [](auto& item) -> auto& { return item.checked; }, written));
    EXPECT_NE(written.find("menu"), std::string::npos);
}

TEST(ATextBehindAPointer, ReadsAsElsewhere)
{
    const auto url = [](auto& action) -> auto&
    {
        if (!action.url) action.url = new std::string;
        return *action.url;
    };
    std::string written;
    EXPECT_TRUE(readsItsOwn<MediaPlayerAction>(
        R"({"url": "http://somewhere/else.mp4", "vol": 7, "action": "start", "pos": {"x": 1}, "playerid": "p"})", url,
        written));
    EXPECT_NE(written.find("\"vol\":\t7"), std::string::npos);
    EXPECT_NE(written.find("\"url\":\t\"http://somewhere/else.mp4\""), std::string::npos);
    EXPECT_TRUE(readsItsOwn<MediaPlayerAction>(R"({"url":"a"})", url, written));
}

/// An application's position that keeps a text.
class KeepingPosition : public Position {
public:
    std::string kept;
};

TEST(ATextInAnApplicationsChild, IsReadToItsEndThoughTheChildIsDropped)
{
    ServiceCompTagAction action;
    auto* const position = new KeepingPosition;
    action.pos = position;
    position->kept = R"({"componentTag": 3, "action": "start", "localAssociatedAccess": true, "vol": 40})";
    unsigned char error = 9;
    EXPECT_TRUE(action.deserialize(position->kept.c_str(), error));
    EXPECT_EQ(error, 9);
    EXPECT_EQ(action.pos, nullptr);
    EXPECT_EQ(action.componentTag, 3);
    EXPECT_EQ(action.vol, 40);
}

TEST(ATextInAnApplicationsChild, IsReadToItsEndAlsoWhenItIsShort)
{
    ServiceCompTagAction action;
    auto* const position = new KeepingPosition;
    action.pos = position;
    position->kept = R"({"vol":40})";
    EXPECT_TRUE(action.deserialize(position->kept.c_str()));
    EXPECT_EQ(action.pos, nullptr);
    EXPECT_EQ(action.vol, 40);
}

/// An application's position that does something else when it is read.
class ActingPosition : public Position {
public:
    explicit ActingPosition(std::function<void()> act) : act_(std::move(act)) {}
    bool deserialize(const char* text) override
    {
        act_();
        return Position::deserialize(text);
    }
    using Position::deserialize;

private:
    const std::function<void()> act_;
};

TEST(ATextThatAnApplicationsChildReleases, IsReadToItsEnd)
{
    for (const char* text : {R"({"pos": {"x": 5, "y": 6}, "playerid": "p", "vol": 7, "currTime": 8})",
                             R"({"currTime": 8, "vol": 7, "playerid": "p", "pos": {"x": 5, "y": 6}})"}) {
        MediaPlayerAction action;
        action.pos = new ActingPosition([&] { delete std::exchange(action.url, nullptr); });
        action.url = new std::string(text);
        EXPECT_TRUE(action.deserialize(action.url->c_str()));
        EXPECT_EQ(action.url, nullptr);
        EXPECT_EQ(action.pos->x, 5);
        EXPECT_EQ(action.pos->y, 6);
        EXPECT_EQ(*action.vol, 7);
        EXPECT_EQ(*action.currTime, 8);
    }
}

TEST(ATextThatAnApplicationsChildOverwrites, IsReadAsItWas)
{
    MediaPlayerAction action;
    std::string text = R"({"pos": {"x": 5, "y": 6}, "playerid": "p", "vol": 7, "currTime": 8})";
    action.pos = new ActingPosition([&] { text.assign(text.size(), '9'); });
    EXPECT_TRUE(action.deserialize(text.c_str()));
    EXPECT_EQ(action.pos->x, 5);
    EXPECT_EQ(*action.playerid, "p");
    EXPECT_EQ(*action.vol, 7);
    EXPECT_EQ(*action.currTime, 8);
}

}  // namespace
}  // namespace OrvuTests
