#include <gtest/gtest.h>

#include "orvu/PairingScreens.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AQrCodeScreen, StartsWithItsTexts)
{
    const QrCodeScreen screen("Phone", "https://tv");
    EXPECT_EQ(screen.getDataType(), 27u);
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_EQ(screen.qrCodeData, "https://tv");
    EXPECT_FALSE(screen.dispose || screen.success);
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

TEST(APinScreen, StartsWithItsTexts)
{
    const PinScreen screen("Phone", "1234");
    EXPECT_EQ(screen.getDataType(), 28u);
    EXPECT_EQ(screen.displayName, "Phone");
    EXPECT_EQ(screen.pin, "1234");
    EXPECT_FALSE(screen.dispose || screen.success);
}

}  // namespace
}  // namespace OrvuTests
