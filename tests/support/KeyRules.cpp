#include "support/KeyRules.h"

namespace OrvuTests {

TEST_P(AMessage, ReadsEachOfItsKeys)
{
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(object(&Key::value).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, KeepsTheValueOfEachKeyToItsOwnField)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        EXPECT_TRUE(message->deserialize(objectFor(key, member(key.name, key.value)).c_str())) << key.name;
        expectOthersBut(key, *message);
        const auto other = filled();
        EXPECT_TRUE(other->deserialize(textOf(*message).c_str())) << key.name;
        if (key.isWritten) expectOthersBut(key, *other);
    }
}

TEST_P(AMessage, ReadsItsKeysInAnyOrderAmongOthers)
{
    std::string members = R"("HEADER": "whatever")";
    for (auto key = keys().rbegin(); key != keys().rend(); ++key)
        members += R"(, "nonsense": {"a": 1}, )" + member(key->name, key->value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(whole(members).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, FindsItsKeysInAnyLetterCase)
{
    std::string members = R"("header": "whatever")";
    for (const Key& key : keys())
        members += ", " + member(inOtherLetterCase(key.name), key.value);
    const auto message = filled();
    EXPECT_TRUE(message->deserialize(whole(members, inOtherLetterCase).c_str()));
    expectValues(*message);
}

TEST_P(AMessage, ReadsEachFormOfAValue)
{
    for (const Key& key : keys()) {
        for (const auto& [value, field] : key.forms) {
            const auto message = filled();
            EXPECT_TRUE(message->deserialize(objectFor(key, member(key.name, value)).c_str())) << key.name << value;
            EXPECT_EQ(key.field(*message), field) << key.name << ": " << value;
        }
    }
}

TEST_P(AMessage, TakesTheFirstOfEqualKeys)
{
    for (const Key& key : keys()) {
        const std::string first = member(inOtherLetterCase(key.name), key.value);
        const auto message = filled();
        EXPECT_TRUE(message->deserialize(objectFor(key, first + ", " + member(key.name, key.otherValue)).c_str()));
        EXPECT_EQ(key.field(*message), key.value) << key.name;
    }
}

TEST_P(AMessage, TakesNoSecondKeyWhereTheFirstIsOfAnotherKind)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        const std::string members = member(key.name, "null") + ", " + member(key.name, key.value);
        EXPECT_EQ(message->deserialize(objectFor(key, members).c_str()), !key.isRequired) << key.name;
        EXPECT_EQ(key.field(*message), key.otherValue) << key.name;
    }
}

TEST_P(AMessage, LeavesTheFieldOfAMissingKey)
{
    for (const Key& key : keys()) {
        const auto message = filled();
        EXPECT_EQ(message->deserialize(objectFor(key, "").c_str()), !key.isRequired) << key.name;
        expectOthers(*message);
    }
}

TEST_P(AMessage, LeavesTheFieldOfAKeyOfAnotherKind)
{
    for (const Key& key : keys()) {
        for (const std::string& value : key.wrongKinds) {
            const auto message = filled();
            EXPECT_EQ(message->deserialize(objectFor(key, member(key.name, value)).c_str()), !key.isRequired)
                << key.name << ": " << value;
            expectOthers(*message);
        }
    }
}

TEST_P(AMessage, ReadsNothingFromWhatIsNoJson)
{
    const std::string cut = object(&Key::value).substr(0, object(&Key::value).size() - 1);
    const auto message = filled();
    EXPECT_FALSE(message->deserialize(nullptr));
    for (const std::string& text : {std::string(), std::string(" "), std::string("text"), std::string("{"), cut})
        EXPECT_FALSE(message->deserialize(text.c_str())) << text;
    expectOthers(*message);
}

TEST_P(AMessage, FindsNoKeysInWhatIsNoObject)
{
    const std::string inArray = "[" + object(&Key::value) + "]";
    const auto message = filled();
    for (const std::string& text : {inArray, std::string("[]"), std::string("5"), std::string(R"("text")"),
                                    std::string("true"), std::string("null"), std::string("{}")}) {
        EXPECT_EQ(message->deserialize(text.c_str()), !requiresKeys()) << text;
    }
    expectOthers(*message);
}

TEST_P(AMessage, IgnoresWhatFollowsItsText)
{
    for (const std::string& more : {std::string(" and more"), std::string("}"), object(&Key::otherValue)}) {
        const auto message = filled();
        EXPECT_TRUE(message->deserialize((" \n" + object(&Key::value) + more).c_str())) << more;
        expectValues(*message);
    }
}

TEST_P(AMessage, ReadsTheSameFromAParsedItem)
{
    const auto message = filled();
    EXPECT_TRUE(message->deserializeObject(treeOf(object(&Key::value)).get()));
    expectValues(*message);
}

TEST_P(AMessage, GivesNoReasons)
{
    const auto message = filled();
    unsigned char error = 77;
    EXPECT_FALSE(message->deserialize(object(&Key::value).c_str(), error));
    EXPECT_FALSE(message->deserialize(nullptr, error));
    EXPECT_EQ(error, 77);
    expectOthers(*message);
}

TEST_P(AMessage, IsReadFromWhatItWrote)
{
    const auto message = filled();
    const auto other = GetParam().make();
    EXPECT_TRUE(other->deserialize(textOf(*message).c_str()));
    for (const Key& key : keys())
        EXPECT_EQ(key.field(*other), key.isWritten ? key.otherValue : key.field(*GetParam().make())) << key.name;
}

}  // namespace OrvuTests
