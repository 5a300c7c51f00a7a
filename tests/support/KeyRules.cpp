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
        EXPECT_EQ(other->deserialize(textOf(*message).c_str()), GetParam().isWritten) << key.name;
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
        const auto [value, field] = anotherKind(key);
        const bool isRead = !key.isRequired && !key.wrongKinds.empty();
        const auto message = filled();
        const std::string members = member(key.name, value) + ", " + member(key.name, key.value);
        EXPECT_EQ(message->deserialize(objectFor(key, members).c_str()), isRead) << key.name;
        EXPECT_EQ(key.field(*message), field) << key.name;
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

TEST_P(AMessage, FailsOnAValueThatItRefuses)
{
    for (const Key& key : keys()) {
        for (const auto& [value, field] : key.refused) {
            const std::string text = objectFor(key, member(key.name, value));
            const auto message = filled();
            EXPECT_FALSE(message->deserialize(text.c_str())) << text;
            EXPECT_EQ(key.field(*message), field) << text;
            const auto asked = filled();
            unsigned char error = 77;
            EXPECT_FALSE(asked->deserialize(text.c_str(), error)) << text;
            EXPECT_EQ(error != 77, GetParam().givesReasons) << text;
            EXPECT_EQ(key.field(*asked), GetParam().givesReasons ? field : key.otherValue) << text;
        }
    }
}

TEST_P(AMessage, ReadsNothingFromWhatIsNotJson)
{
    const std::string cut = object(&Key::value).substr(0, object(&Key::value).size() - 1);
    const auto message = filled();
    EXPECT_FALSE(message->deserialize(nullptr));
    for (const std::string& text : {std::string(), std::string(" "), std::string("text"), std::string("{"), cut})
        EXPECT_FALSE(message->deserialize(text.c_str())) << text;
    expectOthers(*message);
}

TEST_P(AMessage, FindsNoKeysInWhatIsNotAnObject)
{
    const std::string inArray = "[" + object(&Key::value) + "]";
    const auto message = filled();
    for (const std::string& text : {inArray, std::string("[]"), std::string("5"), std::string(R"("text")"),
                                    std::string("true"), std::string("null"), std::string("{}")}) {
        const bool isRefused = GetParam().needsObject && text != "{}";
        EXPECT_EQ(message->deserialize(text.c_str()), !requiresKeys() && !isRefused) << text;
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

TEST_P(AMessage, IsReadByTheErrorReportingReaderOnlyWhereThatGivesReasons)
{
    const bool givesReasons = GetParam().givesReasons;
    const auto message = filled();
    unsigned char error = 77;
    EXPECT_EQ(message->deserialize(object(&Key::value).c_str(), error), givesReasons);
    EXPECT_EQ(error, 77);
    givesReasons ? expectValues(*message) : expectOthers(*message);
    for (const char* text : {static_cast<const char*>(nullptr), "", "{", "text"}) {
        error = 77;
        EXPECT_FALSE(message->deserialize(text, error));
        EXPECT_EQ(error, givesReasons ? 1 : 77);
    }
}

TEST_P(AMessage, IsReadFromWhatItWrote)
{
    const auto message = filled();
    const auto other = GetParam().make();
    EXPECT_EQ(other->deserialize(textOf(*message).c_str()), GetParam().isWritten);
    for (const Key& key : keys())
        EXPECT_EQ(key.field(*other), key.isWritten ? key.otherValue : key.field(*GetParam().make())) << key.name;
}

}  // namespace OrvuTests
