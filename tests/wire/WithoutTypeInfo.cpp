#include "wire/WithoutTypeInfo.h"

#include "orvu/PairingScreens.h"
#include "support/Messages.h"

// Compiled without run-time type information, as some applications are.

namespace OrvuTests {
namespace {

class Screen : public Orvu::ConfirmationScreen {
public:
    Screen() : ConfirmationScreen("phone") {}
    char* serialize() override { return ConfirmationScreen::serialize(); }
};

class Another : public Orvu::Serializable {
public:
    Another() : Serializable(Orvu::DataTypeConfirmationScreen) {}
    char* serialize() override { return mallocText(R"({"HEADER":"confirmationScreen"})"); }
    bool deserialize(const char*) override { return true; }
    using Serializable::deserialize;
};

}  // namespace

std::shared_ptr<Orvu::Serializable> screenWithoutTypeInfo()
{
    return std::make_shared<Screen>();
}

std::shared_ptr<Orvu::Serializable> anotherClassWithoutTypeInfo()
{
    return std::make_shared<Another>();
}

}  // namespace OrvuTests
