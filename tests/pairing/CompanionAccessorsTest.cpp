#include <gtest/gtest.h>
#include <type_traits>
#include <utility>

#include "orvu/ClientApplications.h"
#include "orvu/TargetApplications.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AClientApplication, HasAccessors)
{
    ClientApplication app;
    app.setClientId("a");
    app.setDisplayName("b");
    app.setRefreshToken("c");
    app.setCopy(1);
    app.setPairingState(2);
    app.setAuthorized(3);
    app.setBornTime(4);
    EXPECT_EQ(app.getClientId() + app.getDisplayName() + app.getRefreshToken(), "abc");
    EXPECT_EQ(app.clientId + app.displayName + app.refreshToken, "abc");
    EXPECT_EQ(app.getCopy(), 1);
    EXPECT_EQ(app.getPairingState(), 2);
    EXPECT_EQ(app.getAuthorized(), 3);
    EXPECT_EQ(app.getBornTime(), 4);
}

TEST(TokenMessages, HaveAccessors)
{
    ServiceBoundTokenList bound;
    bound.setToken("a");
    EXPECT_EQ(bound.getToken(), "a");
    RevokeToken revoke;
    revoke.setToken("a");
    revoke.setServiceContextId("b");
    EXPECT_EQ(revoke.getToken() + revoke.getServiceContextId(), "ab");
}

TEST(ATargetAppFilter, HasAccessors)
{
    TargetAppFilter filter;
    filter.setScheme("a");
    filter.setHost("b");
    filter.setPath("c");
    EXPECT_EQ(filter.getScheme() + filter.getHost() + filter.getPath(), "abc");
    EXPECT_EQ(filter.scheme + filter.host + filter.path, "abc");
}

/// The pair of functions of one boolean field of a message.
template <class Message>
struct Switch {
    bool Message::*field;
    bool (Message::*get)() const;
    void (Message::*set)(bool);
};

/// That each pair sets and shows its own field, and no other.
template <class Message, std::size_t Count>
void expectOwnFields(const Switch<Message> (&switches)[Count])
{
    for (const Switch<Message>& one : switches) {
        Message message;
        (message.*one.set)(true);
        for (const Switch<Message>& each : switches) {
            EXPECT_EQ(message.*each.field, each.field == one.field);
            EXPECT_EQ((message.*each.get)(), each.field == one.field);
        }
    }
}

TEST(ATargetApp, HasAccessors)
{
    TargetApp target;
    target.setTargetId("a");
    target.setDisplayName("b");
    target.setCanonicalName("c");
    target.setPriority(PriorityTypeBackground);
    EXPECT_EQ(target.getTargetId() + target.getDisplayName() + target.getCanonicalName(), "abc");
    EXPECT_EQ(target.targetId + target.displayName + target.canonicalName, "abc");
    EXPECT_EQ(target.getPriority(), PriorityTypeBackground);
    expectOwnFields<TargetApp>({
        {&TargetApp::running, &TargetApp::isRunning, &TargetApp::setRunning},
        {&TargetApp::writeCanonicalName, &TargetApp::isWriteCanonicalName, &TargetApp::setWriteCanonicalName},
        {&TargetApp::writeRunningState, &TargetApp::isWriteRunningState, &TargetApp::setWriteRunningState},
    });
}

TEST(ATargetAppList, HasAccessors)
{
    TargetAppList list;
    EXPECT_TRUE(list.isWriteCanonicalNames());
    list.setTargetId("a");
    list.setWriteCanonicalNames(false);
    EXPECT_EQ(list.getTargetId(), "a");
    EXPECT_FALSE(list.isWriteCanonicalNames() || list.writeCanonicalNames);
}

TEST(ATargetAppAction, HasAccessors)
{
    TargetAppAction action;
    action.setUrl("a");
    action.setTargetId("b");
    action.setAction(TargetStatusTypeStop);
    action.setPriority(PriorityTypeBackground);
    EXPECT_EQ(action.getUrl() + action.getTargetId(), "ab");
    EXPECT_EQ(action.url + action.targetId, "ab");
    EXPECT_EQ(action.getAction(), TargetStatusTypeStop);
    EXPECT_EQ(action.getPriority(), PriorityTypeBackground);
}

TEST(ATargetAppPerformAction, HasAccessors)
{
    TargetAppPerformAction action;
    action.setCanonicalName("a");
    action.setAction(TargetStatusTypeStart);
    action.setPriority(PriorityTypeBackground);
    EXPECT_EQ(action.getCanonicalName(), "a");
    EXPECT_EQ(action.getAction(), TargetStatusTypeStart);
    EXPECT_EQ(action.getPriority(), PriorityTypeBackground);
}

template <class Message, class = void>
constexpr bool kLetsSetWhatWasRead = false;
template <class Message>
constexpr bool kLetsSetWhatWasRead<Message, std::void_t<decltype(std::declval<Message>().setTargetIdRead(true))>> =
    true;
template <class Message>
constexpr bool kLetsSetWhatWasRead<Message, std::void_t<decltype(std::declval<Message>().setPriorityRead(true))>> =
    true;

TEST(WhatWasRead, IsSaidByReadingAlone)
{
    EXPECT_FALSE(kLetsSetWhatWasRead<TargetApp>);
    EXPECT_FALSE(kLetsSetWhatWasRead<TargetAppAction>);
    EXPECT_FALSE(kLetsSetWhatWasRead<TargetAppPerformAction>);
}

TEST(WhatWasRead, IsSaidOfEachKey)
{
    TargetApp target;
    ASSERT_TRUE(target.deserialize(R"({"displayName": "a", "canonicalName": "b", "filters": [{"scheme": "c"}]})"));
    EXPECT_FALSE(target.isTargetIdRead());
    EXPECT_TRUE(target.isDisplayNameRead() && target.isCanonicalNameRead());
    TargetAppAction action;
    ASSERT_TRUE(action.deserialize(R"({"targetId": "a", "priority": "foreground"})"));
    EXPECT_FALSE(action.isUrlRead() || action.isActionRead());
    EXPECT_TRUE(action.isTargetIdRead() && action.isPriorityRead());
    TargetAppPerformAction command;
    ASSERT_TRUE(command.deserialize(R"({"action": "start"})"));
    EXPECT_TRUE(command.isActionRead());
    EXPECT_FALSE(command.isPriorityRead() || command.isCanonicalNameRead());
}

TEST(ADeepLink, HasAccessors)
{
    DeepLink link;
    link.setTargetId("a");
    link.setUrl("b");
    EXPECT_EQ(link.getTargetId() + link.getUrl(), "ab");
    EXPECT_EQ(link.targetId + link.url, "ab");
}

template <class Message>
class AListOfCompanions : public testing::Test {};
using Lists = testing::Types<ClientApplicationList, ServiceBindTokensList, ServiceBoundTokenList, TargetAppList>;
TYPED_TEST_SUITE(AListOfCompanions, Lists);

TYPED_TEST(AListOfCompanions, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<TypeParam>);
    EXPECT_FALSE(std::is_copy_assignable_v<TypeParam>);
}

}  // namespace
}  // namespace OrvuTests
