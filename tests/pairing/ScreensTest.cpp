#include <gtest/gtest.h>
#include <string>

#include "orvu/PairingScreens.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(APairMobileAppScreen, StartsWithPairingDisabled)
{
    const PairMobileAppScreen screen;
    EXPECT_EQ(screen.getDataType(), 25u);
    EXPECT_FALSE(screen.pairingEnabled);
}

TEST(APairMobileAppScreen, WritesItsHeaderWhateverTheFlagSays)
{
    PairMobileAppScreen screen;
    EXPECT_EQ(textOf(screen), "{\n\t\"HEADER\":\t\"pairMobileAppScreen\",\n\t\"pairingEnabled\":\tfalse\n}");
    screen.pairingEnabled = true;
    screen.serializeHeader(false);
    EXPECT_EQ(textOf(screen), "{\n\t\"HEADER\":\t\"pairMobileAppScreen\",\n\t\"pairingEnabled\":\ttrue\n}");
}

TEST(APairMobileAppScreen, HasAccessors)
{
    PairMobileAppScreen screen;
    screen.setPairingEnabled(true);
    EXPECT_TRUE(screen.pairingEnabled);
    EXPECT_TRUE(screen.isPairingEnabled());
}

TEST(AConfirmationScreen, StartsWithItsDisplayName)
{
    const ConfirmationScreen screen("Phone");
    EXPECT_EQ(screen.getDataType(), 26u);
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_FALSE(screen.confirmed || screen.canceled || screen.dispose || screen.success);
}

TEST(AConfirmationScreen, WritesItsKeysInTheAgreedOrder)
{
    ConfirmationScreen screen("Phone");
    EXPECT_EQ(textOf(screen),
              "{\n"
              "\t\"HEADER\":\t\"confirmationScreen\",\n"
              "\t\"displayName\":\t\"Phone\",\n"
              "\t\"confirmed\":\tfalse,\n"
              "\t\"canceled\":\tfalse,\n"
              "\t\"dispose\":\tfalse,\n"
              "\t\"success\":\tfalse\n"
              "}");
}

TEST(AConfirmationScreen, WritesItsHeaderWhateverTheFlagSays)
{
    ConfirmationScreen screen("");
    screen.serializeHeader(false);
    screen.confirmed = screen.dispose = true;
    EXPECT_EQ(textOf(screen),
              "{\n"
              "\t\"HEADER\":\t\"confirmationScreen\",\n"
              "\t\"displayName\":\t\"\",\n"
              "\t\"confirmed\":\ttrue,\n"
              "\t\"canceled\":\tfalse,\n"
              "\t\"dispose\":\ttrue,\n"
              "\t\"success\":\tfalse\n"
              "}");
}

TEST(AConfirmationScreen, ReadsNothingWithoutItsDisplayName)
{
    ConfirmationScreen screen("Phone");
    EXPECT_FALSE(screen.deserialize(R"({"confirmed": true, "canceled": true, "dispose": true, "success": true})"));
    EXPECT_FALSE(screen.deserialize(R"({"displayName": null, "confirmed": true})"));
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_FALSE(screen.confirmed || screen.canceled || screen.dispose || screen.success);
}

TEST(AConfirmationScreen, HasAccessors)
{
    ConfirmationScreen screen("");
    screen.setDisplayName("Phone");
    screen.setConfirmed(true);
    EXPECT_EQ(screen.getDisplayName(), "Phone");
    EXPECT_TRUE(screen.isConfirmed());
    EXPECT_FALSE(screen.isCanceled() || screen.isDispose() || screen.isSuccess());
    screen.setCanceled(true);
    screen.setDispose(true);
    screen.setSuccess(true);
    screen.setConfirmed(false);
    EXPECT_FALSE(screen.isConfirmed());
    EXPECT_TRUE(screen.isCanceled() && screen.isDispose() && screen.isSuccess());
    EXPECT_TRUE(screen.canceled && screen.dispose && screen.success);
}

TEST(AQrCodeScreen, StartsWithItsTexts)
{
    const QrCodeScreen screen("Phone", "https://tv");
    EXPECT_EQ(screen.getDataType(), 27u);
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_EQ(screen.qrCodeData, "https://tv");
    EXPECT_FALSE(screen.dispose || screen.success);
}

TEST(AQrCodeScreen, WritesItsKeysInTheAgreedOrderAndItsHeaderAlways)
{
    QrCodeScreen screen("Phone", "https://tv");
    screen.serializeHeader(false);
    screen.success = true;
    EXPECT_EQ(textOf(screen),
              "{\n"
              "\t\"HEADER\":\t\"qrCodeScreen\",\n"
              "\t\"displayName\":\t\"Phone\",\n"
              "\t\"qrCodeData\":\t\"https://tv\",\n"
              "\t\"dispose\":\tfalse,\n"
              "\t\"success\":\ttrue\n"
              "}");
}

TEST(AQrCodeScreen, KeepsANameThatComesWithoutData)
{
    QrCodeScreen screen("Phone", "before");
    EXPECT_FALSE(screen.deserialize(R"({"displayName": "Tablet", "success": true, "dispose": true})"));
    EXPECT_EQ(screen.displayName, "Tablet");
    EXPECT_EQ(screen.qrCodeData, "before");
    EXPECT_FALSE(screen.dispose || screen.success);
    EXPECT_FALSE(screen.deserialize(R"({"success": true, "qrCodeData": 5, "displayName": "Watch"})"));
    EXPECT_EQ(screen.displayName, "Watch");
    EXPECT_FALSE(screen.success);
}

TEST(AQrCodeScreen, ReadsNothingWithoutItsDisplayName)
{
    QrCodeScreen screen("Phone", "before");
    EXPECT_FALSE(screen.deserialize(R"({"qrCodeData": "new", "success": true})"));
    EXPECT_EQ(screen.qrCodeData, "before");
    EXPECT_FALSE(screen.success);
}

TEST(AQrCodeScreen, HasAccessors)
{
    QrCodeScreen screen("", "");
    screen.setDisplayName("Phone");
    screen.setQrCodeData("data");
    EXPECT_EQ(screen.getDisplayName(), "Phone");
    EXPECT_EQ(screen.getQrCodeData(), "data");
    screen.setDispose(true);
    EXPECT_TRUE(screen.isDispose());
    EXPECT_FALSE(screen.isSuccess());
    screen.setSuccess(true);
    EXPECT_TRUE(screen.isSuccess());
}

TEST(APinScreen, StartsWithItsTexts)
{
    const PinScreen screen("Phone", "1234");
    EXPECT_EQ(screen.getDataType(), 28u);
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_EQ(screen.pin, "1234");
    EXPECT_FALSE(screen.dispose || screen.success);
}

TEST(APinScreen, WritesItsKeysInTheAgreedOrderAndItsHeaderAlways)
{
    PinScreen screen("Phone", "0007");
    screen.serializeHeader(false);
    screen.dispose = true;
    EXPECT_EQ(textOf(screen),
              "{\n"
              "\t\"HEADER\":\t\"pinScreen\",\n"
              "\t\"displayName\":\t\"Phone\",\n"
              "\t\"pin\":\t\"0007\",\n"
              "\t\"dispose\":\ttrue,\n"
              "\t\"success\":\tfalse\n"
              "}");
}

TEST(APinScreen, ReadsANameWithoutAPin)
{
    PinScreen screen("Phone", "1234");
    EXPECT_TRUE(screen.deserialize(R"({"displayName": "Tablet"})"));
    EXPECT_EQ(screen.displayName, "Tablet");
    EXPECT_EQ(screen.pin, "1234");
}

TEST(APinScreen, ReadsNothingWithoutItsDisplayName)
{
    PinScreen screen("Phone", "1234");
    EXPECT_FALSE(screen.deserialize(R"({"pin": "5678", "dispose": true, "success": true})"));
    EXPECT_EQ(screen.pin, "1234");
    EXPECT_FALSE(screen.dispose || screen.success);
}

TEST(APinScreen, HasAccessors)
{
    PinScreen screen("", "");
    screen.setDisplayName("Phone");
    screen.setPin("1234");
    EXPECT_EQ(screen.getDisplayName(), "Phone");
    EXPECT_EQ(screen.getPin(), "1234");
    screen.setSuccess(true);
    EXPECT_TRUE(screen.isSuccess());
    EXPECT_FALSE(screen.isDispose());
    screen.setDispose(true);
    EXPECT_TRUE(screen.isDispose());
}

TEST(AScreen, DoesNotExamineTheHeader)
{
    PairMobileAppScreen screen;
    EXPECT_TRUE(screen.deserialize(R"({"HEADER": "gingaApp", "pairingEnabled": true})"));
    EXPECT_TRUE(screen.pairingEnabled);
    PinScreen pin("", "");
    EXPECT_TRUE(pin.deserialize(R"({"HEADER": 5, "displayName": "Phone"})"));
}

TEST(ACopiedScreen, HasAllItsFields)
{
    ConfirmationScreen screen("Phone");
    screen.success = true;
    ConfirmationScreen copy(screen);
    EXPECT_EQ(textOf(copy), textOf(screen));
    ConfirmationScreen assigned("");
    assigned = screen;
    EXPECT_EQ(textOf(assigned), textOf(screen));
}

}  // namespace
}  // namespace OrvuTests
