#include "support/Vocabularies.h"

namespace OrvuTests {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AVocabulary);  // a family may have no words

TEST_P(AVocabulary, HasAWordForEachValue)
{
    for (std::size_t i = 0; i < table().rows.size(); ++i) {
        EXPECT_EQ(table().rows[i].value, static_cast<int>(i));
        EXPECT_STREQ(table().toWord(static_cast<int>(i)), table().rows[i].word.c_str());
    }
}

TEST_P(AVocabulary, HasAnEmptyWordForValuesBeyondItsTable)
{
    const int size = static_cast<int>(table().rows.size());
    for (const int value : {size, size + 1, 255, 256, INT_MAX, -1, INT_MIN})
        EXPECT_STREQ(table().toWord(value), "") << value;
}

TEST_P(AVocabulary, ReadsEachWordAsAgreed)
{
    for (const WordRow& row : table().rows)
        EXPECT_EQ(table().toValue(row.word), row.readsAs) << row.word;
}

TEST_P(AVocabulary, ComparesWordsExactly)
{
    for (const WordRow& row : table().rows) {
        for (const std::string& text : {" " + row.word, row.word + " ", row.word + "x", row.word.substr(1),
                                        row.word + row.word, row.word + std::string(1, '\0')})
            expectOther(text);
    }
    for (const std::string& text : {std::string(), std::string(" "), std::string("0"), std::string(1, '\0')})
        expectOther(text);
}

TEST_P(AVocabulary, TellsLettersByTheirCase)
{
    for (const WordRow& row : table().rows) {
        for (std::size_t i = 0; i < row.word.size(); ++i) {
            std::string text = row.word;
            text[i] = static_cast<char>(text[i] ^ 0x20);  // the other case of a letter, something else of the rest
            expectOther(text);
        }
    }
}

}  // namespace OrvuTests
