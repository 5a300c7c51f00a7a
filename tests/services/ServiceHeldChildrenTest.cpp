#include "orvu/EventInformation.h"
#include "support/HeldRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Services, AHeldChildOf,
    testing::Values(
        heldChild("ComponentGroupDescriptorCaUnit", "caUnit", &ComponentGroupDescriptor::caUnit),
        replaced(heldChild("EventInfoLinkage", "linkage", &EventInfo::linkage)),
        replaced(heldChild("EventInfoHyperlink", "hyperlink", &EventInfo::hyperlink)),
        replaced(heldChild("EventInfoSeries", "series", &EventInfo::series)),
        replaced(heldChild("EventInfoEventGroup", "eventGroup", &EventInfo::eventGroup)),
        replaced(heldChild("EventInfoComponentGroup", "componentGroup", &EventInfo::componentGroup)),
        beside(heldChild("EventInfoListPresent", "present", &EventInfoList::present), R"("schedule": [], )"),
        beside(heldChild("EventInfoListFollowing", "following", &EventInfoList::following), R"("schedule": [], )")),
    heldName);

}  // namespace OrvuTests
