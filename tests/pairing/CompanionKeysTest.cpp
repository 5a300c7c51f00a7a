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
        keysOf<TargetAppList>("TargetAppList", {text("targetId", &TargetAppList::targetId)}, {"targetApps"}),
        keysOf<DeepLink>("DeepLink", {text("targetId", &DeepLink::targetId), text("url", &DeepLink::url)})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Companions, AVocabulary,
    testing::Values(wordsOf<PriorityType>("PriorityType", &TargetApp::priorityTypeString, &TargetApp::stringToPriority,
                                          0, {{0, "unknown", 0}, {1, "foreground", 1}, {2, "background", 2}})),
    tableName);

}  // namespace OrvuTests
