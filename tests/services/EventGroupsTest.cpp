#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/EventDescriptors.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Ids = std::vector<int>;

Ids idsOf(const EventGroup& group)
{
    Ids ids;
    for (const EventGroupDescriptor* descriptor : group.descriptors)
        ids.push_back(descriptor->id);
    return ids;
}
Ids idsOf(const ComponentGroup& group)
{
    Ids ids;
    for (const ComponentGroupDescriptor* component : group.components)
        ids.push_back(component->id);
    return ids;
}
Ids idsOf(const CAUnit& unit)
{
    return unit.componentTags;
}

int numberOf(const EventGroup& group)
{
    return group.type;
}
int numberOf(const ComponentGroup& group)
{
    return group.type;
}
int numberOf(const CAUnit& unit)
{
    return unit.id;
}

/// A group as new, read from a text, in which "#" stands for the name of its number and 5* for the element with the
/// id 5.
template <class Group>
struct Reading {
    Group group;
    bool success;

    explicit Reading(std::string text)
    {
        constexpr bool isUnit = std::is_same_v<Group, CAUnit>;
        replaceAll(text, "#", isUnit ? "id" : "type");
        replaceAll(text, "5*", isUnit ? "5" : R"({"id": 5})");
        replaceAll(text, "6*", isUnit ? "6" : R"({"id": 6})");
        success = group.deserialize(text.c_str());
        EXPECT_FALSE(text.empty() && success);
    }

    static void replaceAll(std::string& text, const std::string& mark, const std::string& by)
    {
        for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += by.size())
            text.replace(at, mark.size(), by);
    }

    Ids ids() const { return idsOf(group); }
    int number() const { return numberOf(group); }
};

template <class Group>
class APositionalGroup : public testing::Test {};
using Groups = testing::Types<EventGroup, ComponentGroup, CAUnit>;
TYPED_TEST_SUITE(APositionalGroup, Groups, );

TYPED_TEST(APositionalGroup, FindsItsListAfterItsNumberWhateverItsName)
{
    for (const char* text : {R"({"#": 1, "list": [5*, 6*]})", R"({"#": 1, "eventGroupDescriptor": [5*, 6*]})",
                             R"({"HEADER": "x", "more": [6*], "#": 1, "HEADER": [5*, 6*], "caUnit": [6*]})",
                             R"({"#": 1, "#": [5*, 6*]})", R"({"#": true, "": {"a": 5*, "b": 6*}} and more)"}) {
        const Reading<TypeParam> read(text);
        EXPECT_TRUE(read.success) << text;
        EXPECT_EQ(read.number(), 1) << text;
        EXPECT_EQ(read.ids(), (Ids{5, 6})) << text;
    }
}

TYPED_TEST(APositionalGroup, FindsItsNumberInAnyLetterCase)
{
    const Reading<TypeParam> read(std::is_same_v<TypeParam, CAUnit> ? R"({"ID": 1, "list": [5*]})"
                                                                    : R"({"TYPE": 1, "list": [5*]})");
    EXPECT_TRUE(read.success);
    EXPECT_EQ(read.number(), 1);
    EXPECT_EQ(read.ids(), (Ids{5}));
}

TYPED_TEST(APositionalGroup, FailsWhenNothingFollowsItsNumber)
{
    for (const char* text :
         {R"({"#": 1})", R"({"eventGroupDescriptor": [5*], "#": 1})", R"({"caUnit": [5*], "#": 1})"}) {
        const Reading<TypeParam> read(text);
        EXPECT_FALSE(read.success) << text;
        EXPECT_EQ(read.number(), 1) << text;  // which stays
        EXPECT_TRUE(read.ids().empty()) << text;
    }
}

TYPED_TEST(APositionalGroup, ChangesNothingWithoutItsNumber)
{
    for (const char* text :
         {"{}", R"({"eventGroupDescriptor": []})", R"({"caUnit": [5*]})", R"({"#": null, "list": [5*]})",
          R"({"#": "1", "list": [5*]})", R"({"#": [1], "list": [5*]})", R"({"#": "1", "#": 1, "list": [5*]})", "[]",
          "[5*]", "5", "null", R"("#")", R"([{"#": 1, "list": [5*]}])"}) {
        const Reading<TypeParam> read(text);
        EXPECT_TRUE(read.success) << text;
        EXPECT_EQ(read.number(), 0) << text;
        EXPECT_TRUE(read.ids().empty()) << text;
    }
}

TYPED_TEST(APositionalGroup, HasNoElementsUnderAValueOfAnotherKind)
{
    for (const char* value : {"null", "5", "true", R"("text")", "[]", "{}"}) {
        const Reading<TypeParam> read(R"({"#": 1, "list": )" + std::string(value) + "}");
        EXPECT_TRUE(read.success) << value;
        EXPECT_EQ(read.number(), 1) << value;
        EXPECT_TRUE(read.ids().empty()) << value;
    }
}

TYPED_TEST(APositionalGroup, SaturatesItsNumber)
{
    EXPECT_EQ(Reading<TypeParam>(R"({"#": 1e400, "": []})").number(), INT_MAX);
    EXPECT_EQ(Reading<TypeParam>(R"({"#": -2147483649, "": []})").number(), INT_MIN);
    EXPECT_EQ(Reading<TypeParam>(R"({"#": -2.9, "": []})").number(), -2);
}

TYPED_TEST(APositionalGroup, StaysAsItIsWhereANestedNumberIsInfinite)
{
    TypeParam group;
    const char* const text = R"({"type": 1e400, "id": 1e400, "list": [1]})";
    EXPECT_TRUE(group.deserializeObject(treeOf(text).get()));
    EXPECT_EQ(numberOf(group), 0);
    EXPECT_TRUE(idsOf(group).empty());
}

TYPED_TEST(APositionalGroup, IsNotReadFromWhatIsNotJson)
{
    for (const char* text : {"", "{", "no JSON", R"({"#": 1, "list": [5*])"})
        EXPECT_FALSE(Reading<TypeParam>(text).success) << text;
    TypeParam group;
    EXPECT_FALSE(group.deserialize(nullptr));
    unsigned char error = 77;
    EXPECT_FALSE(group.deserialize(R"({"type": 1, "id": 1, "list": []})", error));
    EXPECT_EQ(error, 77);
}

TYPED_TEST(APositionalGroup, AppendsToWhatItHolds)
{
    Reading<TypeParam> read(R"({"#": 1, "list": [5*]})");
    EXPECT_TRUE(read.group.deserialize(std::is_same_v<TypeParam, CAUnit> ? R"({"id": 2, "x": [7]})"
                                                                         : R"({"type": 2, "x": [{"id": 7}]})"));
    EXPECT_EQ(read.number(), 2);
    EXPECT_EQ(read.ids(), (Ids{5, 7}));
}

TEST(ACAUnit, WritesItsTags)
{
    CAUnit unit;
    EXPECT_EQ(unit.getDataType(), 81u);
    EXPECT_EQ(textOf(unit), R"({"id":0,"caUnit":[]})");
    unit.id = 3;
    for (const int tag : {0, 16, 16, -1, INT_MAX})
        unit.addComponentTag(tag);
    unit.serializeHeader(false);
    EXPECT_EQ(textOf(unit), R"({"id":3,"caUnit":[0,16,16,-1,2147483647]})");
}

TEST(ACAUnit, TakesWhatIsNotANumberForZero)
{
    EXPECT_EQ(Reading<CAUnit>(R"({"#": 3, "": [1, "2", null, true, [4], {"a": 5}, 6.9, 1e400, -1e400]})").ids(),
              (Ids{1, 0, 0, 0, 0, 0, 6, INT_MAX, INT_MIN}));
}

TEST(ACAUnit, TakesAnInfiniteNestedNumberForZero)
{
    CAUnit unit;
    EXPECT_TRUE(unit.deserializeObject(treeOf(R"({"id": 1, "": [1e400, 2.9999999999999996]})").get()));
    EXPECT_EQ(unit.componentTags, (Ids{0, 3}));
}

TEST(AComponentGroupDescriptor, ReadsIntoTheUnitItHolds)
{
    ComponentGroupDescriptor descriptor;
    CAUnit* const unit = descriptor.caUnit;
    EXPECT_TRUE(descriptor.deserialize(R"({"CAUNIT": {"id": 3, "caUnit": [16]}, "caUnit": {"id": 4, "x": [17]}})"));
    EXPECT_TRUE(descriptor.deserialize(R"({"caUnit": {"id": 5, "x": [18]}, "id": 1})"));
    EXPECT_EQ(descriptor.caUnit, unit);
    EXPECT_EQ(unit->id, 5);
    EXPECT_EQ(unit->componentTags, (Ids{16, 18}));
}

TEST(AComponentGroupDescriptor, IgnoresThatItsUnitCannotBeRead)
{
    for (const char* value : {"null", "5", "[]", R"("x")", R"({"id": 3})", R"({"caUnit": [16], "id": 3})"}) {
        ComponentGroupDescriptor descriptor;
        EXPECT_TRUE(descriptor.deserialize((R"({"id": 1, "caUnit": )" + std::string(value) + "}").c_str())) << value;
        EXPECT_EQ(descriptor.id, 1) << value;
        EXPECT_TRUE(descriptor.caUnit->componentTags.empty()) << value;
    }
}

}  // namespace
}  // namespace OrvuTests
