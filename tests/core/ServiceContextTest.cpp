#include <climits>
#include <gtest/gtest.h>
#include <locale>
#include <string>

#include "orvu/ServiceContext.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Data = ServiceContext::ServiceContextData;

/// A record as one text, so that a test sees all of it.
std::string shown(const Data& data)
{
    return std::to_string(data.firstId) + " " + std::to_string(data.secondId) + " " +
           std::to_string(data.serviceTypeDigit) + " " + std::to_string(data.serviceNumberDigit) +
           (data.valid ? " valid" : "") + (data.currentService ? " current" : "") + (data.allServices ? " all" : "");
}

std::string parsed(const std::string& text)
{
    return shown(ServiceContext::parse(text));
}

constexpr const char* kRejected = "0 0 0 0";

TEST(AServiceContext, StartsEmpty)
{
    EXPECT_EQ(shown(Data()), kRejected);
}

TEST(AServiceContext, GeneratesTheLocatorOfAService)
{
    const struct {
        unsigned serviceId;
        const char* locator;
    } rows[] = {{0, "1.2.01"},      {1, "1.2.02"},    {7, "1.2.08"},      {8, "1.2.81"},
                {9, "1.2.82"},      {15, "1.2.88"},   {16, "1.2.161"},    {23, "1.2.168"},
                {24, "1.2.241"},    {31, "1.2.248"},  {32, "1.2.01"},     {40, "1.2.81"},
                {0x1f0, "1.2.161"}, {255, "1.2.248"}, {0xe760, "1.2.01"}, {UINT_MAX, "1.2.248"}};
    for (const auto& row : rows)
        EXPECT_EQ(ServiceContext::generateStringId(1, 2, row.serviceId), row.locator) << row.serviceId;
}

TEST(AServiceContext, GeneratesLocatorsFromNumbersOfAnySize)
{
    EXPECT_EQ(ServiceContext::generateStringId(0, 0, 0), "0.0.01");
    EXPECT_EQ(ServiceContext::generateStringId(65535, 1234567, 0), "65535.1234567.01");
    EXPECT_EQ(ServiceContext::generateStringId(UINT_MAX, 2147483648u, 0), "4294967295.2147483648.01");
}

TEST(AServiceContext, GeneratesTheSameInAnyLocale)
{
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    EXPECT_EQ(ServiceContext::generateStringId(1234567, 65535, 0), "1234567.65535.01");
    std::locale::global(before);
}

TEST(AServiceContext, ReadsItsOwnLocatorsOfTheFirstTwoServiceTypes)
{
    for (unsigned serviceId = 0; serviceId < 256; ++serviceId) {
        const Data data = ServiceContext::parse(ServiceContext::generateStringId(7, 8, serviceId));
        const bool isReadable = (serviceId & 0x10) == 0;  // a higher service type makes three digits
        EXPECT_EQ(data.valid, isReadable) << serviceId;
        EXPECT_EQ(data.firstId, isReadable ? 7 : 0) << serviceId;
        EXPECT_EQ(data.secondId, isReadable ? 8 : 0) << serviceId;
        EXPECT_EQ(data.serviceTypeDigit, isReadable && (serviceId & 8) ? 8 : 0) << serviceId;
        EXPECT_EQ(data.serviceNumberDigit, isReadable ? static_cast<int>(serviceId & 7) + 1 : 0) << serviceId;
    }
}

TEST(AServiceContext, ReadsALocator)
{
    EXPECT_EQ(parsed("1.2.01"), "1 2 0 1 valid");
    EXPECT_EQ(parsed("1.2.82"), "1 2 8 2 valid");
    EXPECT_EQ(parsed("1.2.10"), "1 2 1 0 valid");
    EXPECT_EQ(parsed("1.2.1"), "1 2 0 1 valid");
    EXPECT_EQ(parsed("1.2.9"), "1 2 0 9 valid");
    EXPECT_EQ(parsed("1.2.99"), "1 2 9 9 valid");
    EXPECT_EQ(parsed("1.2.0000042"), "1 2 4 2 valid");
    EXPECT_EQ(parsed("65535.1234567.5"), "65535 1234567 0 5 valid");
}

TEST(AServiceContext, RejectsAThirdNumberOfThreeDigits)
{
    EXPECT_EQ(parsed("1.2.161"), kRejected);
    EXPECT_EQ(parsed("1.2.100"), kRejected);
    EXPECT_EQ(parsed("1.2.2147483647"), kRejected);
    EXPECT_EQ(parsed("1.2.99999999999999999999"), kRejected);
}

TEST(AServiceContext, RejectsNumbersBelowOne)
{
    for (const char* text : {"1.2.0", "0.2.5", "1.0.5", "1.2.00", "-1.2.3", "1.-2.3", "1.2.-3", "-0.2.3"})
        EXPECT_EQ(parsed(text), kRejected) << text;
}

TEST(AServiceContext, RejectsAnyOtherNumberOfDots)
{
    for (const char* text : {"", "1", "1.2", "1.2.3.4", "1.2.3.", ".1.2.3", "1...3", "...", "1.2.01.", "123"})
        EXPECT_EQ(parsed(text), kRejected) << text;
}

TEST(AServiceContext, RejectsEmptyParts)
{
    for (const char* text : {"..", "1..3", ".2.3", "1.2.", ". .", "1. .3", " . . "})
        EXPECT_EQ(parsed(text), kRejected) << text;
}

TEST(AServiceContext, ReadsNumbersAsFarAsTheirDigitsGo)
{
    EXPECT_EQ(parsed("1.2.3x"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("1a.2b.3c"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("1,5.2.3"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("1.2.3 4"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("1.2.0x1f"), kRejected);
    EXPECT_EQ(parsed("a.2.3"), kRejected);
    EXPECT_EQ(parsed("1.b.3"), kRejected);
    EXPECT_EQ(parsed("1.2.c"), kRejected);
}

TEST(AServiceContext, ReadsNumbersAfterBlanksAndASign)
{
    EXPECT_EQ(parsed(" 1. 2. 3"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("\t\n\v\f\r 1.\n2.\t34"), "1 2 3 4 valid");
    EXPECT_EQ(parsed("+1.+2.+3"), "1 2 0 3 valid");
    EXPECT_EQ(parsed("1 .2 .3 "), "1 2 0 3 valid");
    EXPECT_EQ(parsed("+ 1.2.3"), kRejected);
    EXPECT_EQ(parsed("+-1.2.3"), kRejected);
    EXPECT_EQ(parsed("+.2.3"), kRejected);
}

TEST(AServiceContext, ReadsHugeNumbersAsTheNearestThatFits)
{
    EXPECT_EQ(parsed("2147483647.2147483648.3"), "2147483647 2147483647 0 3 valid");
    EXPECT_EQ(parsed("4294967297.99999999999999999999.3"), "2147483647 2147483647 0 3 valid");
    EXPECT_EQ(parsed("-4294967295.2.3"), kRejected);
    EXPECT_EQ(parsed("-99999999999999999999.2.3"), kRejected);
    EXPECT_EQ(parsed("1.2." + std::string(1000, '9')), kRejected);
}

TEST(AServiceContext, ReadsNumbersUpToANul)
{
    EXPECT_EQ(parsed(std::string("1\0x.2\0x.3\0x", 11)), "1 2 0 3 valid");
    EXPECT_EQ(parsed(std::string("\0001.2.3", 6)), kRejected);
    EXPECT_EQ(parsed(std::string("1.2.3\0.4", 8)), kRejected);
}

TEST(AServiceContext, KnowsTheKeywords)
{
    EXPECT_EQ(parsed("current-service"), "0 0 0 0 valid current");
    EXPECT_EQ(parsed("all-services"), "0 0 0 0 valid all");
}

TEST(AServiceContext, KnowsTheKeywordsExactly)
{
    for (const char* text :
         {"Current-Service", "CURRENT-SERVICE", "current-service ", " current-service", "current-services",
          "current-servic", "All-Services", "all-service", "all-services ", " all-services", "all-services."}) {
        EXPECT_EQ(parsed(text), kRejected) << text;
    }
    EXPECT_EQ(parsed(std::string("current-service\0", 16)), kRejected);
}

}  // namespace
}  // namespace OrvuTests
