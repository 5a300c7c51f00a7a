#include "support/ListRules.h"

#include <cctype>

namespace OrvuTests {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AListOfChildren);  // a family may have no lists

TEST_P(AListOfChildren, StartsEmptyAndIgnoresNull)
{
    list().addNull(*message);
    EXPECT_EQ(countIn(*message), 0u);
}

TEST_P(AListOfChildren, SwitchesTheHeadersOfItsChildrenOffForGood)
{
    list().addPlain(*message);
    Orvu::Serializable* const child = list().children(*message)[0];
    const std::string inList = writtenList(*message);
    const Tree alone = treeOf(textOf(*child));
    char* const compact = cJSON_PrintUnformatted(alone.get());
    EXPECT_EQ(inList, "[" + std::string(compact) + "]");
    EXPECT_EQ(headerFlagOf(*child), list().leavesHeaders);
    cJSON_free(compact);
}

TEST_P(AListOfChildren, SwitchesTheHeaderOffAlsoOfAChildThatItSkips)
{
    list().addSilent(*message);
    textOf(*message);
    EXPECT_EQ(headerFlagOf(*list().children(*message)[0]), list().leavesHeaders);
}

TEST_P(AListOfChildren, WritesAnApplicationsClassAsItWritesItsOwn)
{
    list().addPlain(*message);
    list().addPlain(*message);
    const auto other = list().make();
    list().addForwarding(*other);
    list().addForwarding(*other);
    EXPECT_EQ(textOf(*message), textOf(*other));
}

TEST_P(AListOfChildren, SkipsChildrenWithoutAJsonText)
{
    list().addSilent(*message);
    list().addSaying(*message, "{}");
    list().addSaying(*message, "no JSON");
    list().addSaying(*message, "");
    list().addNullDirectly(*message);
    list().addSaying(*message, R"({"HEADER":"mine"})");
    list().addSilent(*message);
    EXPECT_EQ(writtenList(*message), R"([{},{"HEADER":"mine"}])");
}

TEST_P(AListOfChildren, CarriesWhateverJsonAChildWrites)
{
    list().addSaying(*message, "[1, null]");
    list().addSaying(*message, "7 and more");
    EXPECT_EQ(writtenList(*message), "[[1,null],7]");
}

TEST_P(AListOfChildren, OwnsItsChildren)
{
    int destroyed = 0;
    {
        const auto owner = list().make();
        list().addCounted(*owner, destroyed);
        list().addCounted(*owner, destroyed);
        list().addNullDirectly(*owner);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST_P(AListOfChildren, AppendsWhatItReads)
{
    const std::string two = with("[" + list().goodElement + ", " + list().goodElement + "]");
    EXPECT_TRUE(message->deserialize(two.c_str()));
    EXPECT_EQ(countIn(*message), 2u);
    for (const Orvu::Serializable* const child : list().children(*message))
        EXPECT_TRUE(headerFlagOf(*child));
    list().addNullDirectly(*message);
    EXPECT_TRUE(message->deserialize(two.c_str()));
    EXPECT_EQ(countIn(*message), 5u);
}

TEST_P(AListOfChildren, HoldsNothingOfAValueOfAnotherKind)
{
    for (const char* value : {"null", "true", "5", R"("text")", "[]", "{}"}) {
        EXPECT_EQ(message->deserialize(with(value).c_str()), !list().needsOne) << value;
        EXPECT_EQ(countIn(*message), 0u) << value;
    }
}

TEST_P(AListOfChildren, ReadsTheMembersOfAnObjectAsWell)
{
    const std::string members = R"({"a": )" + list().goodElement + R"(, "b": )" + list().goodElement + "}";
    EXPECT_TRUE(message->deserialize(with(members).c_str()));
    EXPECT_EQ(countIn(*message), 2u);
}

TEST_P(AListOfChildren, TakesElementsOfAnyKindThatCanBeRead)
{
    const std::string kinds = R"([null, true, 5, "text", [], {}])";
    message->deserialize(with(kinds).c_str());
    EXPECT_EQ(countIn(*message), list().badElement.empty() ? 6u : 0u);
}

TEST_P(AListOfChildren, DropsElementsThatCannotBeRead)
{
    if (list().badElement.empty()) return;
    const std::string mixed = "[" + list().badElement + ", " + list().goodElement + ", " + list().badElement + "]";
    EXPECT_TRUE(message->deserialize(with(mixed).c_str()));
    EXPECT_EQ(countIn(*message), 1u);
}

TEST_P(AListOfChildren, FindsItsKeyInAnyLetterCaseAndTakesTheFirst)
{
    std::string key = list().key;
    for (char& c : key)
        c = static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
    const std::string& good = list().goodElement;
    const std::string both = '"' + key + "\": [" + good + "], \"" + list().key + "\": [" + good + ", " + good + "]";
    EXPECT_TRUE(message->deserialize(withMembers(both).c_str()));
    EXPECT_EQ(countIn(*message), 1u);
}

TEST_P(AListOfChildren, IsMissedOnlyWhereItIsRequired)
{
    EXPECT_EQ(message->deserialize(withMembers("\"nonsense\": []").c_str()), !list().isRequired);
    EXPECT_EQ(countIn(*message), 0u);
}

TEST_P(AListOfChildren, CarriesManyChildren)
{
    for (int i = 0; i < 2000; ++i)
        list().addPlain(*message);
    std::string many = "[";
    for (int i = 0; i < 2000; ++i)
        many += (i == 0 ? "" : ",") + list().goodElement;
    const auto other = list().make();
    EXPECT_TRUE(other->deserialize(with(many + "]").c_str()));
    EXPECT_EQ(countIn(*other), 2000u);
    EXPECT_NE(textOf(*message), "(null)");
}

}  // namespace OrvuTests
