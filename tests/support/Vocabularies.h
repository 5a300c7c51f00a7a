#pragma once

#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

/// \file
/// What holds for every enumeration that travels as words. A test of a family instantiates AVocabulary with its tables;
/// the rules themselves are in Vocabularies.cpp, which orvu_message_tests() links.

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

}  // namespace OrvuTests
