#include "orvu/ClientApplications.h"
#include "orvu/TargetApplications.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Companions, AListOfChildren,
    testing::Values(
        childList("ClientApplicationListApps", "clientApplicationList", &ClientApplicationList::apps,
                  &ClientApplicationList::addApp),
        optionalList(childList("ServiceBindTokensListServices", "boundServices", &ServiceBindTokensList::services,
                               &ServiceBindTokensList::addService)),
        childList("ServiceBoundTokenListServices", "boundServices", &ServiceBoundTokenList::boundServices,
                  &ServiceBoundTokenList::addService),
        needingOne(needing(childList("TargetAppFilters", "filters", &TargetApp::filters, &TargetApp::addFilter),
                           R"({"scheme": "https"})", R"({"host": "example.com"})")),
        needing(childList("TargetAppListTargets", "targetApps", &TargetAppList::targets, &TargetAppList::addTargetApp),
                R"({"filters": [{"scheme": "https"}]})", R"({"targetId": "a", "filters": []})")),
    listName);

}  // namespace OrvuTests
