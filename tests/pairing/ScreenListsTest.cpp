#include "orvu/PairingScreens.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(Screens, AListOfChildren,
                         testing::Values(optionalList(childList("ScreenItemItems", "contentList", &ScreenItem::items,
                                                                &ScreenItem::addItem)),
                                         childList("ScreenDescriptionItems", "screen_items", &ScreenDescription::items,
                                                   &ScreenDescription::addItem)),
                         listName);

}  // namespace OrvuTests
