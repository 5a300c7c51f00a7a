#include "orvu/EventInformation.h"
#include "orvu/ServiceComponents.h"
#include "orvu/Services.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// A list that comes after the number of its group, whatever its key.
ChildList ofGroup(ChildList list)
{
    return optionalList(beside(std::move(list), R"("type": 1, )"));
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Services, AListOfChildren,
    testing::Values(childList("ServiceListServices", "serviceList", &ServiceList::services, &ServiceList::addService),
                    childList("ServiceComponentListComponents", "components", &ServiceComponentList::components,
                              &ServiceComponentList::addComponent),
                    childList("EventInfoListSchedule", "schedule", &EventInfoList::schedule,
                              &EventInfoList::addScheduleEvent),
                    ofGroup(childList("EventGroupDescriptors", "eventGroupDescriptor", &EventGroup::descriptors,
                                      &EventGroup::addDescriptor)),
                    ofGroup(childList("ComponentGroupComponents", "componentGroupDescriptor",
                                      &ComponentGroup::components, &ComponentGroup::addComponent))),
    listName);

}  // namespace OrvuTests
