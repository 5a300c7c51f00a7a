#pragma once

#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

/// \file
/// What holds for every enumeration that travels as words. A test program includes this file once and instantiates
/// AVocabulary with its tables.

namespace OrvuTests {

/// One value's word, and the value that the word reads as; the values are those of the enumeration.
struct WordRow {
    int value;
    std::string word;
    int readsAs;
};

/// The words of an enumeration, from 0 on without a gap.
struct WordTable {
    std::string name;
    std::function<const char*(int value)> toWord;
    std::function<int(const std::string& word)> toValue;
    int otherwise;  ///< The value of a text that is not one of the words.
    std::vector<WordRow> rows;
};

/// The table of an enumeration and its two functions.
template <class Enum>
WordTable wordsOf(const std::string& name, const char* (*toWord)(Enum), Enum (*toValue)(std::string), int otherwise,
                  std::vector<WordRow> rows)
{
    return {name, [toWord](int value) { return toWord(static_cast<Enum>(value)); },
            [toValue](const std::string& word) { return static_cast<int>(toValue(word)); }, otherwise, std::move(rows)};
}

inline std::ostream& operator<<(std::ostream& out, const WordTable& table)
{
    return out << table.name;
}

inline std::string tableName(const testing::TestParamInfo<WordTable>& info)
{
    return info.param.name;
}

class AVocabulary : public testing::TestWithParam<WordTable> {
protected:
    static const WordTable& table() { return GetParam(); }

    static void expectOther(const std::string& text)
    {
        EXPECT_EQ(table().toValue(text), table().otherwise) << '"' << text << '"';
    }
};

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
