#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/RandomJson.h"
#include "core/ReadingAsCJson.h"
#include "support/Messages.h"
#include "support/Sanitizers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// How many random texts each test reads: ORVU_READING_TEXTS, or as many as take a few seconds.
unsigned texts()
{
    const char* const wanted = std::getenv("ORVU_READING_TEXTS");
    return wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : kIsSlow ? 1000 : 4000;
}

/// JSON as peers could spell it, with any white space, escapes and numbers. In some of these texts are faults.
class OddText {
public:
    explicit OddText(RandomJson& random) : random_(random), hasFaults_(random.once(4)) {}

    std::string text(int levels)
    {
        const std::string mark = random_.once(8) ? "\xEF\xBB\xBF" : "";
        return mark + white() + value(levels) +
               (random_.once(4) ? oneOf({"x", ",", "]", "}", "1", "\"", ":", ".", "e", "{}", "\x01"}) : white());
    }

private:
    std::string white()
    {
        if (!random_.once(3)) return "";
        std::string white(1 + random_.below(random_.once(50) ? 300 : 3), ' ');
        for (char& c : white)
            c = static_cast<char>(1 + random_.below(32));
        return white;
    }

    std::string value(int levels)
    {
        switch (random_.below(levels > 0 ? 7 : 4)) {
            case 0:
                return oneOf({"true", "false", "null", fault("nul", "null")});
            case 1:
                return number();
            case 2:
            case 3:
                return string();
            default:
                return container(levels - 1);
        }
    }

    std::string container(int levels)
    {
        const bool isObject = random_.once(2);
        std::string text = (isObject ? "{" : "[") + white();
        for (unsigned left = random_.below(random_.once(30) ? 60 : 7); left > 0; --left) {
            if (isObject) text += key() + white() + ":" + white();
            text += value(levels) + white();
            if (left > 1) text += "," + white();
        }
        return text + (isObject ? "}" : "]");
    }

    /// Mostly one of a few, so that they come again; their letters may be spelt in any case, and as escapes.
    std::string key()
    {
        if (random_.once(5)) return string();
        std::string text = "\"";
        for (const char c : oneOf({"HEADER", "serviceName", "serviceId", "a", "b", "A", ""}))
            text += random_.once(20) ? escaped(c) : std::string(1, random_.once(9) ? static_cast<char>(c ^ 0x20) : c);
        return text + "\"";
    }

    std::string escaped(char c)
    {
        static constexpr char kHex[] = "0123456789abcdefABCDEF";
        return {'\\', 'u', '0', '0', kHex[c >> 4 & 15], kHex[c & 15]};
    }

    std::string string()
    {
        std::string text = "\"";
        for (unsigned left = random_.once(40) ? 240 + random_.below(40) : random_.below(12); left > 0; --left)
            text += random_.once(6) ? escape() : std::string(1, static_cast<char>('a' + random_.below(26)));
        return text + "\"";
    }

    std::string escape()
    {
        if (random_.once(20)) return oneOf({"\\u0000", fault("\\u12", "\\u12gh"), fault("\\u123\\", "\\u123\\\"")});
        return oneOf({"\\\"",
                      "\\\\",
                      "\\/",
                      "\\b",
                      "\\f",
                      "\\n",
                      "\\r",
                      "\\t",
                      "\\u0041",
                      "\\u00e9",
                      "\\u20AC",
                      "\\uD83D\\uDE00",
                      "\x01",
                      "\xFF",
                      "\xC3\xA9",
                      "\n",
                      "{",
                      "]",
                      fault("\\q", ""),
                      fault("\\ud83d", "u"),
                      fault("\\uDc00", "x"),
                      fault("\\uD83D\\u", "y")});
    }

    std::string number()
    {
        std::string text = random_.once(3) ? "-" : "";
        text += digits() + fault("", "0");
        if (random_.once(3)) text += "." + digits();
        if (random_.once(4)) text += oneOf({fault("e", "e1"), fault("E+", "E-0"), "E5", "e+1", "e-2", "e400", "e9999"});
        return text + fault(".", "");
    }

    std::string digits()
    {
        if (random_.once(4))
            return oneOf({"0", "2147483647", "2147483648", "4294967296", "999999999999999", "9999999999999999",
                          "2.9999999999999996"});
        std::string text(random_.below(random_.once(20) ? 80 : 12), '0');
        for (char& c : text)
            c = static_cast<char>('0' + random_.below(10));
        return text;
    }

    const char* fault(const char* wrong, const char* right) { return hasFaults_ && random_.once(2) ? wrong : right; }

    std::string oneOf(std::initializer_list<const char*> choices)
    {
        return *(choices.begin() + random_.below(static_cast<unsigned>(choices.size())));
    }

    RandomJson& random_;
    const bool hasFaults_;
};

std::string oddText(RandomJson& random)
{
    return OddText(random).text(static_cast<int>(random.below(6)));
}

/// A text with some bytes changed, left out, doubled or put in.
std::string damaged(RandomJson& random, std::string text)
{
    static constexpr char kBytes[] =
        "\"\\{}[]:,-+.eEu0dD1 \t\x01\x1f\xff"
        "ntf";
    for (unsigned left = 1 + random.below(3); left > 0 && !text.empty(); --left) {
        const std::size_t at = random.below(static_cast<unsigned>(text.size()));
        const char byte = random.once(4) ? static_cast<char>(random.below(256)) : kBytes[random.below(sizeof kBytes)];
        switch (random.below(5)) {
            case 0:
                text[at] = byte;
                break;
            case 1:
                text.insert(at, 1, byte);
                break;
            case 2:
                text.erase(at, 1 + random.below(3));
                break;
            case 3:
                text.insert(at, text.substr(at, random.below(20)));
                break;
            default:
                text.erase(at);
        }
    }
    return text;
}

void expectAsCJson(const std::string& text)
{
    EXPECT_EQ(differenceFromCJson(text), "") << text;
}

TEST(ReadingInPlace, AgreesWithCJsonOnPrintedTrees)
{
    for (unsigned seed = 1; seed <= texts() && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const Tree tree = random.tree(6);
        expectAsCJson(taken(random.once(2) ? cJSON_Print(tree.get()) : cJSON_PrintUnformatted(tree.get())));
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnTextsOfAnySpelling)
{
    for (unsigned seed = 1; seed <= texts() && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        expectAsCJson(oddText(random));
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnDamagedTexts)
{
    for (unsigned seed = 1; seed <= texts() && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const std::string text = oddText(random);
        for (int i = 0; i < 10; ++i)
            expectAsCJson(damaged(random, text));
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnTextsCutAnywhere)
{
    for (unsigned seed = 1; seed <= texts() / 40 && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const std::string text = oddText(random);
        for (std::size_t size = 0; size < std::min<std::size_t>(text.size(), 400); ++size)
            expectAsCJson(text.substr(0, size));
    }
}

/// So many bytes of white space, of every kind.
std::string white(unsigned size)
{
    std::string white(size, ' ');
    for (unsigned i = 0; i < size; ++i)
        white[i] = static_cast<char>(' ' - i % 32);
    return white;
}

TEST(ReadingInPlace, AgreesWithCJsonOnWhiteSpaceOfAnyLengthInAnyPlace)
{
    const std::vector<std::string> parts = {"{", "\"a\"", ":", "[",           "1", ",", "\"b\"", ",",
                                            "[", "]",     ",", "{",           "}", "]", ",",     "\"c\"",
                                            ":", "2",     ",", "\"\\u0064\"", ":", "3", "}",     ""};
    for (const unsigned size : {2u, 7u, 8u, 9u, 15u, 16u, 17u, 18u, 24u, 100u, 272u, 273u, 274u, 275u, 600u}) {
        std::string everywhere;
        for (std::size_t place = 0; place < parts.size(); ++place) {
            std::string text;
            for (std::size_t i = 0; i < parts.size(); ++i)
                text += (i == place ? white(size) : "") + parts[i];
            expectAsCJson(text);
            everywhere += white(size) + parts[place];
        }
        expectAsCJson(everywhere);
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnLongTextsAfterWhiteSpaceOfAnyLength)
{
    for (const unsigned length : {255u, 256u, 257u, 258u, 300u}) {
        const std::string text = '"' + std::string(length, 'x') + '"';
        for (unsigned size = 0; size < 300; size += size < 20 || size > 250 ? 1 : 10) {
            const std::string space = white(size);
            expectAsCJson("[" + space + text + space + "," + space + text + space + "]");
            expectAsCJson("{" + space + text + space + ":" + space + text + space + ",\"b\":1}");
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyByteAfterWhiteSpace)
{
    for (unsigned size = 0; size < 40; ++size) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string text = "[" + white(size) + static_cast<char>(byte) + white(30) + "]";
            if (!differenceFromCJson(text).empty()) ADD_FAILURE() << size << " " << byte;
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnObjectsOfManyMembers)
{
    for (const unsigned count : {31u, 32u, 33u, 64u, 100u, 300u}) {
        std::string text = "{";
        for (unsigned i = 0; i < count; ++i)
            text += "\"" + std::to_string(i * 7 % 97) + "\":" + std::to_string(i) + ",";
        text.back() = '}';
        expectAsCJson(text);
    }
}

/// Objects with the string as a text and as a key.
void expectAsCJsonInAString(const std::string& string)
{
    expectAsCJson("{\"a\":\"" + string + "\",\"" + string + "\":1}");
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyUnicodeEscape)
{
    static constexpr const char* kHex[] = {"0123456789abcdef", "0123456789ABCDEF"};
    for (unsigned code = 0; code < 0x10000; code += kIsSlow ? 7 : 1) {
        const char* const hex = kHex[code & 1];
        const std::string escape = {'\\',          'u', hex[code >> 12], hex[code >> 8 & 15], hex[code >> 4 & 15],
                                    hex[code & 15]};
        if (!differenceFromCJson("[\"\\u0041" + escape + "\",\"" + escape + "\"]").empty()) ADD_FAILURE() << escape;
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyByteAmongFourHexadecimalDigits)
{
    for (std::size_t place = 2; place < 6; ++place) {
        for (int byte = 1; byte < 256; ++byte) {
            std::string escape = "\\u00E7";
            escape[place] = static_cast<char>(byte);
            if (!differenceFromCJson("[\"\\u00e7" + escape + "\\u00e7\",2]").empty())
                ADD_FAILURE() << place << " " << byte;
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnEscapesInAnyOrderAndDistance)
{
    const std::vector<std::string> escapes = {"\\n",     "\\\"",    "\\\\",    "\\u00e7", "\\u0041",        "\\u20AC",
                                              "\\u20ad", "\\uFFFF", "\\u0000", "\\u00g1", "\\ud83D\\uDe00", "\\uD83D"};
    for (const std::string& first : escapes) {
        for (const std::string& second : escapes) {
            for (const std::size_t distance : {0, 1, 3, 15, 16, 17, 60, 63, 64, 65, 130, 300})
                expectAsCJsonInAString(first + std::string(distance, 'b') + second + "c");
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnManyEscapes)
{
    for (const char* escape : {"\\n", "\\u00e7", "\\u20AC", "\\u20ac\\u00e7", "\\ud83d\\ude00", "a\\u00e7", "\\\"ab"}) {
        std::string string;
        for (int count = 1; count < 80; ++count) {
            string += escape;
            for (const char* last : {"", "\\t", "\\u00e7", "\\u0000\\n", "\\uD83D\\uDE00"})
                expectAsCJsonInAString(string + last);
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyTwoBytesInAString)
{
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
            if (differenceFromCJson("[\"" + bytes + "\"]").empty()) continue;
            ADD_FAILURE() << first << " " << second;
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyTwoBytesAlone)
{
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
            if (differenceFromCJson(bytes).empty() && differenceFromCJson("[" + bytes + "]").empty()) continue;
            ADD_FAILURE() << first << " " << second;
        }
    }
}

TEST(ReadingInPlace, AgreesWithCJsonOnAnyNumberLikeText)
{
    static constexpr char kCharacters[] = "01.e-+";
    for (int code = 0; code < 6 * 6 * 6 * 6 * 6 * 6; ++code) {
        std::string text;
        for (int rest = code; text.size() < 6; rest /= 6)
            text += kCharacters[rest % 6];
        expectAsCJson(text);
        expectAsCJson("[" + text + "]");
        expectAsCJson("[" + text.substr(0, text.find_last_not_of('0')) + "]");
    }
}

}  // namespace
}  // namespace OrvuTests
