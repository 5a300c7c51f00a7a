#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "golden/Marks.h"
#include "orvu/Orvu.h"

/// The words that the library writes and does not read back: their values must say so in their descriptions in the
/// headers.

namespace OrvuTests {
namespace {

// What the word of a value reads as.

#define FIELD(...)
#define WRITER(...)
#define SETTER(...)
#define GETTER(...)
#define ENUMERATOR(...)
#define WORDS(Enumeration, toWord, toValue)             \
    Orvu::Enumeration readBack(Orvu::Enumeration value) \
    {                                                   \
        return Orvu::toValue(Orvu::toWord(value));      \
    }
#include "fields.inc"
#undef ENUMERATOR
#undef WORDS

Orvu::DataType readBack(Orvu::DataType value)
{
    const std::string text = std::string(R"({"HEADER": ")") + Orvu::Serializable::dataTypeString(value) + "\"}";
    return Orvu::Serializable::deserializeHeader(text.c_str());
}

Orvu::ComponentStatusType readBack(Orvu::ComponentStatusType value)
{
    return value;  // no message carries it
}

/// A value of an enumeration, with its description in the header.
struct Enumerator {
    std::string name;
    std::string description;
    bool comesBack;
};

void PrintTo(const Enumerator& enumerator, std::ostream* out)
{
    *out << enumerator.name << ", described as \"" << enumerator.description << '"';
}

std::vector<Enumerator> enumerators()
{
    return {
#define WORDS(...)
#define ENUMERATOR(Enumeration, enumerator, text) {#enumerator, text, readBack(Orvu::enumerator) == Orvu::enumerator},
#include "fields.inc"
#undef FIELD
#undef WRITER
#undef SETTER
#undef GETTER
#undef ENUMERATOR
#undef WORDS
    };
}

class AnEnumerator : public testing::TestWithParam<Enumerator> {};

TEST_P(AnEnumerator, SaysWhenItsWordIsNotReadBack)
{
    EXPECT_EQ(!GetParam().comesBack, hasOneOf(kLost, GetParam().description));
}

INSTANTIATE_TEST_SUITE_P(EveryWord, AnEnumerator, testing::ValuesIn(enumerators()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace OrvuTests
