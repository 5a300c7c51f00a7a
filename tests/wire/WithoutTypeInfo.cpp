#include "wire/WithoutTypeInfo.h"

#include "orvu/PairingScreens.h"

// Compiled without run-time type information, as some applications are.

namespace OrvuTests {
namespace {

class Screen : public Orvu::ConfirmationScreen {
public:
    Screen() : ConfirmationScreen("phone") {}
    char* serialize() override { return ConfirmationScreen::serialize(); }
};

}  // namespace

std::unique_ptr<Orvu::Serializable> screenWithoutTypeInfo(bool dispose)
{
    auto screen = std::make_unique<Screen>();
    screen->dispose = dispose;
    return screen;
}

}  // namespace OrvuTests
