#include <algorithm>
#include <gtest/gtest.h>

#include "golden/Fields.h"
#include "golden/Marks.h"
#include "support/Messages.h"

/// What is lost between an object that is written and the one that is read: every public field, as the library itself
/// behaves. A field that does not come back must say so in its description in the header.

namespace OrvuTests {
namespace {

using Orvu::Serializable;

template <class Row>
std::string nameOf(const testing::TestParamInfo<Row>& info)
{
    return info.param.owner + "_" + info.param.name;
}

class AField : public testing::TestWithParam<Field> {
protected:
    static std::unique_ptr<Serializable> empty() { return sampleOf(GetParam().owner).empty(); }

    /// A message whose fields are filled, this one in any case.
    static std::unique_ptr<Serializable> filled()
    {
        auto message = sampleOf(GetParam().owner).filled();
        const std::string initial = GetParam().shownIn(*empty());
        if (GetParam().shownIn(*message) == initial) GetParam().changeIn(*message);
        EXPECT_NE(GetParam().shownIn(*message), initial) << "The sample must fill this field.";
        return message;
    }

    /// Whether the field has the same value in the object that is read from what `message` writes.
    static bool survives(Serializable& message)
    {
        const std::string before = GetParam().shownIn(message);
        message.serializeHeader(true);
        const auto other = empty();
        reads(*other, textOf(message));
        return GetParam().shownIn(*other) == before;
    }
};

TEST_P(AField, SaysWhenItDoesNotSurviveTheWire)
{
    const bool survivesAll = survives(*filled()) && survives(*empty());
    const std::string description = GetParam().description;
    if (survivesAll) {
        EXPECT_FALSE(hasOneOf(kLost, description));
    } else {
        EXPECT_TRUE(hasOneOf(kLost, description) || hasOneOf(kLostSometimes, description));
    }
}

TEST(TheHeaders, ShowTheFieldsOfEveryMessageThatHasSome)
{
    for (const auto& row : classes()) {
        const std::string& owner = row.first;
        const bool hasFields = textOf(*sampleOf(owner).filled()).find(',') != std::string::npos;
        EXPECT_TRUE(!fieldsOf(owner).empty() || !hasFields) << owner;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AField, testing::ValuesIn(fields()), nameOf<Field>);

class AMessageWithChildren : public testing::TestWithParam<Function> {
protected:
    /// The messages that the fields of `message` hold.
    static Messages childrenOf(Serializable& message)
    {
        Messages children;
        for (const Field& field : fieldsOf(GetParam().owner))
            field.childrenIn(children, message);
        return children;
    }

    static bool hasHeader(Serializable& message) { return textOf(message).find("\"HEADER\"") != std::string::npos; }
};

TEST_P(AMessageWithChildren, SaysWhenWritingTakesTheirHeader)
{
    const auto message = sampleOf(GetParam().owner).filled();
    Messages children = childrenOf(*message);
    const auto withoutHeader =
        std::partition(children.begin(), children.end(), [](Serializable* child) { return hasHeader(*child); });
    textOf(*message);
    const bool takesHeader =
        !std::all_of(children.begin(), withoutHeader, [](Serializable* child) { return hasHeader(*child); });
    EXPECT_EQ(takesHeader, GetParam().description.find("serializeHeader(true)") != std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AMessageWithChildren, testing::ValuesIn(writers()), nameOf<Function>);

}  // namespace
}  // namespace OrvuTests
