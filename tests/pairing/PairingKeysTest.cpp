#include "orvu/PairingScreens.h"
#include "support/KeyRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// Kept as a text, sent as a boolean.
std::string checkedOf(Serializable& item)
{
    return static_cast<ScreenItem&>(item).checked;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Screens, AMessage,
    testing::Values(
        keysOf<PairMobileAppScreen>("PairMobileAppScreen",
                                    {boolean("pairingEnabled", &PairMobileAppScreen::pairingEnabled)}),
        keysOf<ConfirmationScreen>(
            "ConfirmationScreen",
            {required(text("displayName", &ConfirmationScreen::displayName)),
             boolean("confirmed", &ConfirmationScreen::confirmed), boolean("canceled", &ConfirmationScreen::canceled),
             boolean("dispose", &ConfirmationScreen::dispose), boolean("success", &ConfirmationScreen::success)}),
        keysOf<QrCodeScreen>("QrCodeScreen",
                             {required(text("displayName", &QrCodeScreen::displayName)),
                              required(text("qrCodeData", &QrCodeScreen::qrCodeData)),
                              boolean("dispose", &QrCodeScreen::dispose), boolean("success", &QrCodeScreen::success)}),
        keysOf<PinScreen>("PinScreen",
                          {required(text("displayName", &PinScreen::displayName)), text("pin", &PinScreen::pin),
                           boolean("dispose", &PinScreen::dispose), boolean("success", &PinScreen::success)}),
        keysOf<ScreenDescription>("ScreenDescription", {}, {"screen_items"}),
        keysOf<ScreenItem>("ScreenItem",
                           {text("type", &ScreenItem::type), boolean("visible", &ScreenItem::visible),
                            boolean("enabled", &ScreenItem::enabled), boolean("focused", &ScreenItem::focused),
                            booleanShownBy("checked", checkedOf), text("content", &ScreenItem::content)})),
    nameOf);

}  // namespace OrvuTests
