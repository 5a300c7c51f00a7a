#include <array>
#include <cxxabi.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <typeinfo>

#include "orvu/Results.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

struct ResultRow {
    std::unique_ptr<Serializable> (*make)();
    const std::type_info& type;
    unsigned value;
    const char* text;
};

template <class Result>
ResultRow row(unsigned value, const char* text)
{
    return {[]() -> std::unique_ptr<Serializable> { return std::make_unique<Result>(); }, typeid(Result), value, text};
}

const std::array<ResultRow, 18> kResults = {
    row<UnknowRequest>(0, "{\n\t\"HEADER\":\t\"unknown\"\n}"),
    row<EmptyData>(1, "{\n\t\"HEADER\":\t\"emptyData\"\n}"),
    row<IllegalArgument>(2, "{\n\t\"HEADER\":\t\"illegalArgument\"\n}"),
    row<PlatformUnavailable>(3, "{\n\t\"HEADER\":\t\"platformUnavailable\"\n}"),
    row<FormatNotSupported>(4, "{\n\t\"HEADER\":\t\"formatNotSupported\"\n}"),
    row<ActionNotSupported>(5, "{\n\t\"HEADER\":\t\"actionNotSupported\"\n}"),
    row<ParameterNotSupported>(6, "{\n\t\"HEADER\":\t\"parameterNotSupported\"\n}"),
    row<SuccessResponse>(7, "{\n\t\"HEADER\":\t\"success\"\n}"),
    row<EmptyChannelListError>(11, "{\n\t\"HEADER\":\t\"emptyChannelList\"\n}"),
    row<ServiceNotFoundError>(12, "{\n\t\"HEADER\":\t\"serviceNotFound\"\n}"),
    row<ResourceNotFound>(13, "{\n\t\"HEADER\":\t\"resourceNotFound\"\n}"),
    row<ResourceUnavailable>(14, "{\n\t\"HEADER\":\t\"resourceUnavailable\"\n}"),
    row<NoSignalError>(15, "{\n\t\"HEADER\":\t\"noSignal\"\n}"),
    row<TableNotFound>(16, "{\n\t\"HEADER\":\t\"tableNotFound\"\n}"),
    row<CannotConnectToServer>(17, "{\n\t\"HEADER\":\t\"cannotConnectToServer\"\n}"),
    row<EmptyResponse>(56, "{\n\t\"HEADER\":\t\"emptyResponse\"\n}"),
    row<MissingArgument>(91, "{\n\t\"HEADER\":\t\"missingArgument\"\n}"),
    row<TVServiceNotInUse>(92, "{\n\t\"HEADER\":\t\"tvServiceNotInUse\"\n}"),
};

TEST(AResult, HasItsType)
{
    for (const ResultRow& row : kResults)
        EXPECT_EQ(static_cast<unsigned>(row.make()->getDataType()), row.value) << row.text;
}

TEST(AResult, WritesItsHeaderAndNothingElse)
{
    for (const ResultRow& row : kResults)
        EXPECT_EQ(textOf(*row.make()), row.text);
}

TEST(AResult, WritesItsHeaderWhateverTheFlagSays)
{
    for (const ResultRow& row : kResults) {
        const std::unique_ptr<Serializable> result = row.make();
        result->serializeHeader(false);
        EXPECT_EQ(textOf(*result), row.text);
    }
}

TEST(AResult, ReadsAnyText)
{
    for (const ResultRow& row : kResults) {
        const std::unique_ptr<Serializable> result = row.make();
        for (const char* text : {"", " ", "{", "no JSON", "{}", "[]", "5", R"({"HEADER": "gingaApp"})"})
            EXPECT_TRUE(result->deserialize(text)) << row.text << text;
        EXPECT_TRUE(result->deserialize(nullptr)) << row.text;
        EXPECT_EQ(textOf(*result), row.text);
    }
}

TEST(AResult, ReadsAnyParsedItemButNone)
{
    for (const ResultRow& row : kResults) {
        const std::unique_ptr<Serializable> result = row.make();
        EXPECT_TRUE(result->deserializeObject(treeOf("5").get())) << row.text;
        EXPECT_FALSE(result->deserializeObject(nullptr)) << row.text;
    }
}

TEST(AResult, GivesNoReasons)
{
    for (const ResultRow& row : kResults) {
        unsigned char error = 77;
        EXPECT_FALSE(row.make()->deserialize(row.text, error)) << row.text;
        EXPECT_FALSE(row.make()->deserialize(nullptr, error)) << row.text;
        EXPECT_EQ(error, 77) << row.text;
    }
}

TEST(AResult, ComesBackFromItsTextUnlessItIsEmptyData)
{
    for (const ResultRow& row : kResults) {
        const DataType type = Serializable::deserializeHeader(row.text);
        const std::unique_ptr<Serializable> result(Serializable::factory(type));
        ASSERT_NE(result, nullptr) << row.text;
        const Serializable& made = *result;
        EXPECT_EQ(typeid(made), row.value == 1 ? typeid(UnknowRequest) : row.type) << row.text;
    }
}

TEST(AResult, ComesOutOfTheFactoryUnlessItIsEmptyData)
{
    for (const ResultRow& row : kResults) {
        const std::unique_ptr<Serializable> result(Serializable::factory(static_cast<DataType>(row.value)));
        ASSERT_EQ(result == nullptr, row.value == 1) << row.text;
        if (!result) continue;
        EXPECT_EQ(textOf(*result), row.text);
    }
}

// An application may tell results apart by their classes: none stands for another.
TEST(AResult, DerivesDirectlyFromSerializable)
{
    for (const ResultRow& row : kResults) {
        const auto* const type = dynamic_cast<const abi::__si_class_type_info*>(&row.type);
        ASSERT_NE(type, nullptr) << row.text;
        EXPECT_EQ(*type->__base_type, typeid(Serializable)) << row.text;
    }
}

TEST(AResult, CanBeCopied)
{
    const SuccessResponse result;
    SuccessResponse copy(result);
    EXPECT_EQ(textOf(copy), "{\n\t\"HEADER\":\t\"success\"\n}");
}

}  // namespace
}  // namespace OrvuTests
