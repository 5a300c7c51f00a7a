#include <gmock/gmock.h>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>

#include "core/CatalogueTable.h"
#include "orvu/PairingScreens.h"
#include "orvu/PlatformCapabilities.h"
#include "orvu/Results.h"
#include "support/LogCapture.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string headerText(const std::string& value)
{
    return R"({"HEADER": ")" + value + R"("})";
}

TEST(TheCatalogue, HasTheTypesThatPeersKnow)
{
    EXPECT_EQ(allTypes().size(), kCatalogue.size());
    for (unsigned value = 0; value < kCatalogue.size(); ++value)
        EXPECT_EQ(kCatalogue[value].value, value);
}

TEST(TheCatalogue, NumbersItsTypes)
{
    for (const CatalogueRow& row : kCatalogue)
        EXPECT_EQ(static_cast<unsigned>(row.type), row.value) << row.wireName;
}

TEST(TheCatalogue, NamesItsTypes)
{
    for (const CatalogueRow& row : kCatalogue)
        EXPECT_STREQ(Serializable::dataTypeString(row.type), row.wireName);
}

TEST(TheCatalogue, NamesNothingOutsideOfIt)
{
    const auto end = static_cast<unsigned>(kCatalogue.size());
    for (const unsigned value :
         {end, end + 1, 200u, 255u, 256u, 65536u, 0x7fffffffu, 0x80000000u, static_cast<unsigned>(-1)})
        EXPECT_STREQ(Serializable::dataTypeString(static_cast<DataType>(value)), "") << value;
}

TEST(TheHeaderMapping, MapsTheNamesItKnows)
{
    for (const CatalogueRow& row : kCatalogue) {
        const unsigned expected = row.mapping == Mapped ? row.value : 0u;
        EXPECT_EQ(static_cast<unsigned>(Serializable::deserializeHeader(headerText(row.wireName).c_str())), expected)
            << row.wireName;
    }
}

TEST(TheHeaderMapping, LeavesThirteenNamesOut)
{
    for (const char* name : {"emptyData", "pos", "codecsSupported", "persistentVariableValue", "contentDescription",
                             "linkageDescriptor", "hyperlinkDescriptor", "seriesDescriptor", "eventGroupDescriptor",
                             "eventGroup", "componentGroup", "componentGroupDescriptor", "cAUnit"}) {
        EXPECT_EQ(Serializable::deserializeHeader(headerText(name).c_str()), DataTypeUnknown) << name;
    }
}

TEST(TheHeaderMapping, ComparesTheWholeNameExactly)
{
    for (const CatalogueRow& row : kCatalogue) {
        const std::string name = row.wireName;
        std::string otherCase = name;
        otherCase[0] = static_cast<char>(otherCase[0] ^ 0x20);
        for (const std::string& near :
             {otherCase, name + "s", name.substr(0, name.size() - 1), " " + name, name + " "}) {
            const DataType type = Serializable::deserializeHeader(headerText(near).c_str());
            EXPECT_TRUE(type == DataTypeUnknown || Serializable::dataTypeString(type) == near) << near;
        }
    }
}

TEST(TheFactory, MakesTheClassOfEachType)
{
    for (const CatalogueRow& row : kCatalogue) {
        const std::unique_ptr<Serializable> message(Serializable::factory(row.type));
        ASSERT_EQ(message != nullptr, row.makes != nullptr) << row.wireName;
        if (!message) continue;
        const Serializable& made = *message;
        EXPECT_EQ(typeid(made), *row.makes) << row.wireName;
        if (row.type == DataTypeBounds) continue;  // see below
        EXPECT_EQ(made.getDataType(), row.type) << row.wireName;
    }
}

/// Bounds began as a position without a place. Peers cannot see their type, since bounds write no "HEADER";
/// applications can, and rely on it.
TEST(TheFactory, MakesBoundsThatHaveTheTypeOfAPosition)
{
    const std::unique_ptr<Serializable> bounds(Serializable::factory(DataTypeBounds));
    EXPECT_EQ(DataTypeBounds, 18u);
    EXPECT_EQ(bounds->getDataType(), 19u);
    EXPECT_EQ(Bounds().getDataType(), DataTypePos);
    EXPECT_EQ(DataType{Bounds::kDataType}, DataTypePos);
}

TEST(TheFactory, MakesNothingOfFourteenTypes)
{
    for (const unsigned value : {1, 19, 43, 51, 73, 74, 75, 76, 77, 78, 79, 80, 81, 95})
        EXPECT_EQ(Serializable::factory(static_cast<DataType>(value)), nullptr) << value;
}

TEST(TheFactory, MakesNothingOfTypesOutsideTheCatalogue)
{
    for (const unsigned value :
         {static_cast<unsigned>(kCatalogue.size()), 200u, 0x80000000u, static_cast<unsigned>(-1)})
        EXPECT_EQ(Serializable::factory(static_cast<DataType>(value)), nullptr) << value;
}

TEST(TheFactory, LogsWhatItIsAskedFor)
{
    for (const CatalogueRow& row : kCatalogue) {
        if (row.type == DataTypeUnknown) continue;
        LogCapture log;
        const std::unique_ptr<Serializable> message(Serializable::factory(row.type));
        EXPECT_THAT(log.lines(), ElementsAre(std::string("factory: dataType: ") + row.wireName));
    }
}

TEST(TheFactory, LogsAnEmptyNameForATypeOutsideTheCatalogue)
{
    LogCapture log;
    EXPECT_EQ(Serializable::factory(static_cast<DataType>(200)), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre("factory: dataType: "));
}

TEST(TheFactory, SaysThatTheUnknownIsUnknown)
{
    LogCapture log;
    const std::unique_ptr<Serializable> message(Serializable::factory(DataTypeUnknown));
    EXPECT_NE(dynamic_cast<UnknowRequest*>(message.get()), nullptr);
    EXPECT_THAT(log.lines(), ElementsAre("factory: dataType: unknown", "factory: Unknown"));
}

TEST(TheFactory, MakesScreensWithEmptyTexts)
{
    const std::unique_ptr<Serializable> confirmation(Serializable::factory(DataTypeConfirmationScreen));
    EXPECT_THAT(dynamic_cast<ConfirmationScreen&>(*confirmation).displayName, IsEmpty());
    const std::unique_ptr<Serializable> qrCode(Serializable::factory(DataTypeQrCodeScreen));
    EXPECT_THAT(dynamic_cast<QrCodeScreen&>(*qrCode).displayName, IsEmpty());
    EXPECT_THAT(dynamic_cast<QrCodeScreen&>(*qrCode).qrCodeData, IsEmpty());
    const std::unique_ptr<Serializable> pin(Serializable::factory(DataTypePinScreen));
    EXPECT_THAT(dynamic_cast<PinScreen&>(*pin).displayName, IsEmpty());
    EXPECT_THAT(dynamic_cast<PinScreen&>(*pin).pin, IsEmpty());
}

TEST(TheFactory, MakesAnotherMessageEachTime)
{
    const std::unique_ptr<Serializable> one(Serializable::factory(DataTypeCurrentService));
    const std::unique_ptr<Serializable> other(Serializable::factory(DataTypeCurrentService));
    EXPECT_NE(one, other);
}

TEST(TheFactory, MakesMessagesThatWriteTheirHeaderUnlessTheyOnlyTravelNested)
{
    const std::set<std::string> nested = {"bounds", "displayLayers", "networkInterfaces", "drmSystem", "nclEvent"};
    for (const CatalogueRow& row : kCatalogue) {
        const std::unique_ptr<Serializable> message(Serializable::factory(row.type));
        if (!message) continue;
        const DataType type = nested.count(row.wireName) ? DataTypeUnknown : row.type;
        EXPECT_EQ(Serializable::deserializeHeader(textOf(*message).c_str()), type) << row.wireName;
    }
}

}  // namespace
}  // namespace OrvuTests
