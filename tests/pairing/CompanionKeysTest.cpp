#include "orvu/ClientApplications.h"
#include "orvu/TargetApplications.h"
#include "support/KeyRules.h"
#include "support/Vocabularies.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// The locator that travels alone comes into the service.
std::string locatorOf(Serializable& tokens)
{
    return inQuotes(static_cast<ServiceBindTokens&>(tokens).service->serviceContextId);
}

template <class Message>
Key priority()
{
    return wordShownBy("priority", "foreground", "background", "unknown", [](Serializable& message) {
        return TargetApp::priorityTypeString(static_cast<Message&>(message).priority);
    });
}

/// Of the words only two are read.
template <class Message>
Key action()
{
    Key key = wordShownBy("action", "start", "stop", "unknown", [](Serializable& message) {
        return TargetStatus::targetStatusTypeString(static_cast<Message&>(message).action);
    });
    for (const char* word : {"uninstalled", "requesting", "unknown"})
        key.forms.emplace_back(inQuotes(word), inQuotes("unknown"));
    return key;
}

/// One that writes all it has, and needs a filter.
MessageKeys targetApp()
{
    MessageKeys target =
        keysOf<TargetApp>("TargetApp",
                          {text("targetId", &TargetApp::targetId), text("displayName", &TargetApp::displayName),
                           text("canonicalName", &TargetApp::canonicalName), boolean("running", &TargetApp::running),
                           priority<TargetApp>()},
                          {"filters"});
    target.list = R"([{"scheme": "https"}])";
    target.make = [] {
        auto app = std::make_unique<TargetApp>();
        app->writeCanonicalName = app->writeRunningState = true;
        return app;
    };
    return givingReasons(target);
}

/// The keys of a command beside its link: a number or a boolean fails the read.
std::vector<Key> keysOfACommand()
{
    return {refusing(text("targetId", &TargetAppAction::targetId), {"7", "true", "false"}),
            refusing(action<TargetAppAction>(), {"2", "true", "false"}),
            refusing(neverWritten(priority<TargetAppAction>()), {"2", "true", "false"})};
}

/// With a link nothing else is written.
std::vector<Key> keysOfALink()
{
    std::vector<Key> keys = keysOfACommand();
    for (Key& key : keys)
        key.isWritten = false;
    keys.push_back(text("url", &TargetAppAction::url));
    return keys;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Companions, AMessage,
    testing::Values(
        keysOf<ClientApplication>(
            "ClientApplication",
            {text("clientId", &ClientApplication::clientId), text("displayName", &ClientApplication::displayName),
             number("copy", &ClientApplication::copy), number("pairingState", &ClientApplication::pairingState),
             number("authorized", &ClientApplication::authorized),
             text("refreshToken", &ClientApplication::refreshToken), number("bornTime", &ClientApplication::bornTime)}),
        keysOf<ClientApplicationList>("ClientApplicationList", {}, {"clientApplicationList"}),
        keysOf<ServiceBindTokensList>("ServiceBindTokensList", {}),
        keysOf<ServiceBindTokens>("ServiceBindTokens", {textShownBy("serviceContextId", locatorOf)}),
        keysOf<ServiceBoundTokenList>("ServiceBoundTokenList", {text("token", &ServiceBoundTokenList::token)},
                                      {"boundServices"}),
        keysOf<RevokeToken>("RevokeToken", {text("token", &RevokeToken::token),
                                            text("serviceContextId", &RevokeToken::serviceContextId)}),
        keysOf<TargetAppFilter>("TargetAppFilter",
                                {required(text("scheme", &TargetAppFilter::scheme)),
                                 text("host", &TargetAppFilter::host), text("path", &TargetAppFilter::path)}),
        targetApp(), needingAnObject(keysOf<TargetAppAction>("TargetAppAction", keysOfACommand())),
        needingAnObject(keysOf<TargetAppAction>("TargetAppActionWithALink", keysOfALink())),
        needingAnObject(keysOf<TargetAppPerformAction>(
            "TargetAppPerformAction", {text("canonicalName", &TargetAppPerformAction::canonicalName),
                                       action<TargetAppPerformAction>(), priority<TargetAppPerformAction>()})),
        keysOf<TargetAppList>("TargetAppList", {text("targetId", &TargetAppList::targetId)}, {"targetApps"}),
        keysOf<DeepLink>("DeepLink", {text("targetId", &DeepLink::targetId), text("url", &DeepLink::url)})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Companions, AVocabulary,
    testing::Values(wordsOf<PriorityType>("PriorityType", &TargetApp::priorityTypeString, &TargetApp::stringToPriority,
                                          0, {{0, "unknown", 0}, {1, "foreground", 1}, {2, "background", 2}})),
    tableName);

}  // namespace OrvuTests
