#include <algorithm>
#include <clocale>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "messages/core/CJsonBridge.h"
#include "messages/core/CheckedText.h"
#include "messages/core/JsonValue.h"
#include "support/FailingMemory.h"

using namespace Orvu;

namespace {

bool isPointOdd = false;

/// Makes the library, but not cJSON, see another decimal point while it lives.
class OddPoint {
public:
    OddPoint() { isPointOdd = true; }
    ~OddPoint() { isPointOdd = false; }
};

}  // namespace

extern "C" {
lconv* __real_localeconv();

// The linker sends here what the program's own objects, the library's among them, ask of localeconv.
lconv* __wrap_localeconv()
{
    static lconv odd = *__real_localeconv();
    static char comma[] = ",";
    odd.decimal_point = comma;
    return isPointOdd ? &odd : __real_localeconv();
}
}

namespace OrvuTests {
namespace {

using Refusal = CheckedText::Refusal;

std::string times(int count, const std::string& text)
{
    std::string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

/// Whether it is JSON, on which cJSON agrees.
bool isJson(const std::string& text)
{
    const bool is = static_cast<bool>(CheckedText(text.c_str()));
    EXPECT_EQ(is, parseJson(text.c_str()) != nullptr) << text;
    return is;
}

bool isJsonInArray(const std::string& value)
{
    return isJson("[" + value + "]");
}

Refusal refusalOf(const std::string& text)
{
    return CheckedText(text.c_str()).refusal();
}

std::size_t refusedAt(const char* text)
{
    EXPECT_FALSE(isJson(text));
    return CheckedText(text).refusedAt();
}

TEST(ACheckedText, MayBeAnyValue)
{
    for (const char* text : {"{}", "[]", "\"\"", "\"a\"", "0", "-1.5e3", "true", "false", "null", "{\"a\":[1,{}]}"})
        EXPECT_TRUE(isJson(text)) << text;
    for (const char* text : {"", " ", "a", "tru", "nul", "True", ",", "]", "}", ":", "\"", "'a'"})
        EXPECT_FALSE(isJson(text)) << text;
}

TEST(ACheckedText, IsNotJsonWhenThereIsNone)
{
    const CheckedText json(nullptr);
    EXPECT_FALSE(json);
    EXPECT_EQ(json.refusal(), Refusal::NotJson);
    EXPECT_FALSE(json.value());
}

TEST(ACheckedText, SkipsAByteOrderMarkOnceAndOnlyAtItsBeginning)
{
    EXPECT_TRUE(isJson("\xEF\xBB\xBF[]"));
    EXPECT_TRUE(isJson("\xEF\xBB\xBF 1"));
    EXPECT_FALSE(isJson(" \xEF\xBB\xBF[]"));
    EXPECT_FALSE(isJson("\xEF\xBB\xBF\xEF\xBB\xBF[]"));
    EXPECT_FALSE(isJson("\xEF\xBB[]"));
    EXPECT_FALSE(isJson("\xEF\xBB\xBF"));
}

TEST(ACheckedText, TakesEveryByteFrom1To32AsWhiteSpace)
{
    for (int byte = 1; byte < 256; ++byte) {
        const std::string w(2, static_cast<char>(byte));
        EXPECT_EQ(
            isJson("[{" + w + "\"a\"" + w + ":" + w + "[" + w + "1" + w + "," + w + "{" + w + "}" + w + "]" + w + "}]"),
            byte <= 32)
            << byte;
    }
}

TEST(ACheckedText, MayBeginWithWhiteSpace)
{
    for (char byte = 1; byte <= 32; ++byte)
        EXPECT_TRUE(isJson(std::string(3, byte) + "1"));
}

TEST(ACheckedText, EndsAtItsFirstNul)
{
    EXPECT_TRUE(isJson(std::string("[1]\0]", 5)));
    EXPECT_FALSE(isJson(std::string("[1,\0 2]", 7)));
    EXPECT_FALSE(isJson(std::string("\"a\0\"", 4)));
}

TEST(ACheckedText, IsNotLookedAtAfterItsFirstValue)
{
    for (const char* text : {"truex", "nullnull", "1e", "1e+", "0x10", "1-2", "1.5.2", "\"a\"\""}) {
        EXPECT_TRUE(isJson(text)) << text;
        EXPECT_FALSE(isJsonInArray(text)) << text;
    }
    EXPECT_TRUE(isJson("{}}"));
    EXPECT_TRUE(isJson("[]]"));
    EXPECT_TRUE(isJson("[1] , \"\\q"));
}

TEST(ACheckedText, SeparatesItemsAndMembersByOneComma)
{
    for (const char* text :
         {"[,]",   "[1,]",  "[,1]",   "[1,,2]",    "[1 2]",    "{,}",       "{\"a\":1,}", "{\"a\":1 \"b\":2}",
          "[1",    "[1,",   "{\"a\"", "{\"a\":",   "{\"a\":1", "{\"a\":1,", "{\"a\",1}",  "{\"a\"::1}",
          "{1:1}", "{a:1}", "[1}",    "{\"a\":1]", "{\"a\"}",  "[\"a\":1]"})
        EXPECT_FALSE(isJson(text)) << text;
}

TEST(ACheckedText, HasNumbersThatBeginWithADigitOrAMinus)
{
    for (const char* number : {"0", "-0", "01", "1.", "-.5", "-1.", "1.e2", "1e5", "1E+5", "-0.0e-0", "00.50"})
        EXPECT_TRUE(isJsonInArray(number)) << number;
    for (const char* number : {"+1", ".5", "-", "--1", "-e5", "-.", "-.e1", "1e", "1e+", "1.5.2", "1-2", "0x10", "1a"})
        EXPECT_FALSE(isJsonInArray(number)) << number;
}

// How long depends on the release of cJSON.
TEST(ACheckedText, HasNumbersAsLongAsCJsonReadsThem)
{
    EXPECT_TRUE(isJsonInArray(std::string(63, '7')));
    EXPECT_TRUE(isJson(std::string(1000, '7')));
    const bool readsLong = isJsonInArray(std::string(64, '7'));
    EXPECT_EQ(cJsonReadsLongNumbers(), readsLong);
    for (const std::string& number :
         {std::string(1000, '7'), "0." + std::string(1000, '0') + "1", "-" + std::string(63, '1') + "e1",
          std::string(62, '1') + "e1", std::string(62, '1') + "e", std::string(70, '1') + "e",
          std::string(70, '1') + "."})
        isJsonInArray(number);
}

TEST(ACheckedText, LeavesFractionsToCJsonWhereTheDecimalPointIsAnother)
{
    const OddPoint point;
    for (const char* number : {"1.5", "-.5", "1.e2", "0.25e-3", "15"})
        EXPECT_TRUE(isJsonInArray(number)) << number;
    for (const char* number : {"1.5.2", "-.", "1.5e", ".5", "1,"})
        EXPECT_FALSE(isJsonInArray(number)) << number;
    isJsonInArray(std::string(100, '1') + ".5");
    isJson("1." + std::string(100, '1') + "-");
}

TEST(ACheckedText, EndsAStringAtTheFirstQuoteThatNoBackslashCovers)
{
    EXPECT_TRUE(isJsonInArray(R"("\"")"));
    EXPECT_TRUE(isJsonInArray(R"("\\")"));
    EXPECT_TRUE(isJsonInArray(R"("\\\"")"));
    EXPECT_FALSE(isJsonInArray(R"("\")"));
    EXPECT_FALSE(isJsonInArray(R"("\\"")"));
    EXPECT_FALSE(isJson("\"abc\\"));
}

TEST(ACheckedText, HasEveryOtherByteInItsStringsAsItIs)
{
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '"' || byte == '\\') continue;
        for (int before = 0; before < 9; ++before)  // anywhere in a word of the machine
            EXPECT_TRUE(isJsonInArray("\"" + std::string(before, 'a') + static_cast<char>(byte) + "\"")) << byte;
    }
}

TEST(ACheckedText, HasTheEscapesOfJsonOnly)
{
    for (int byte = 1; byte < 256; ++byte) {
        const bool isEscape = std::string("\"\\/bfnrt").find(static_cast<char>(byte)) != std::string::npos;
        EXPECT_EQ(isJsonInArray(std::string("\"\\") + static_cast<char>(byte) + "x\""), isEscape) << byte;
    }
}

TEST(ACheckedText, TakesSixBytesForAUnicodeEscapeWhateverTheyAre)
{
    for (const char* string : {R"("\u0041")", R"("\uabCD")", R"("a\u12\"4b")", R"("\u123\q")", R"("\u123\\")",
                               R"("\u    ")", R"("\u0000\u123\q")"})
        EXPECT_TRUE(isJson(string)) << string;
    EXPECT_TRUE(isJsonInArray(R"("\u12\"4b", "\u123\\", 1)"));
    for (const char* string : {R"("\u")", R"("\u1")", R"("\u12")", R"("\u123")", R"("\q")", R"("\u0000\q")",
                               R"("\u123\\q")", R"("\u0000\u12")", "\"\\u0000", "\"\\u123\\"})
        EXPECT_FALSE(isJsonInArray(string)) << string;
}

TEST(ACheckedText, HasSurrogatesInPairsOnly)
{
    for (const char* string : {R"("\uD83D\uDE00")", R"("\uD800\uDC00")", R"("\udbff\udfff")", R"("\uD7FF\uE000")"})
        EXPECT_TRUE(isJsonInArray(string)) << string;
    for (const char* string : {R"("\uDC00")", R"("\uDFFF")", R"("\uD800")", R"("\uDBFFx")", R"("\uD800\u0041")",
                               R"("\uD800\uD800")", R"("\uD800\nDC00")", R"("\uD800\n\uDC00")", R"("\uD800\uDC0")",
                               R"("\uD800\uDC0x")", R"("\uD800\")", R"("\u0000\uDC00")"})
        EXPECT_FALSE(isJsonInArray(string)) << string;
}

TEST(ACheckedText, HasAThousandContainersOpenAtOnce)
{
    EXPECT_TRUE(isJson(times(1000, "[") + times(1000, "]")));
    EXPECT_FALSE(isJson(times(1001, "[") + times(1001, "]")));
    EXPECT_TRUE(isJson(times(999, "{\"a\":") + "[]" + times(999, "}")));
    EXPECT_FALSE(isJson(times(1000, "{\"a\":") + "[]" + times(1000, "}")));
    EXPECT_TRUE(isJson("[" + times(20, times(999, "[") + times(999, "]") + ",") + "1]"));
}

TEST(ACheckedText, HasNoMoreContainersThanItsIndexMayHold)
{
    std::string text = "[" + times(CheckedText::kMaxContainers - 1, "[],") + "1]";
    EXPECT_EQ(refusalOf(text), Refusal::None);
    text.insert(1, "{},");
    EXPECT_EQ(refusalOf(text), Refusal::TooLarge);
}

TEST(ACheckedText, HasAsManyLongTextsAndRunsOfWhiteSpaceBesideThem)
{
    const std::string longText = "\"" + std::string(257, 'a') + "\"";
    const std::string white(275, ' ');
    EXPECT_EQ(refusalOf("[" + times(20000, longText + ",{" + longText + ":[]},") + "1]"), Refusal::None);
    EXPECT_EQ(refusalOf("[" + times(20000, white + longText + white + "," + white) + "1]"), Refusal::None);
}

/// White space, so many bytes, with a 7 in every megabyte. Two megabytes take memory.
class LongText {
public:
    explicit LongText(std::size_t size) : size_(size + 1)
    {
        const int file = memfd_create("white", 0);
        EXPECT_EQ(ftruncate(file, kPart), 0);
        text_ = static_cast<char*>(
            mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        std::size_t at = 0;
        for (; size - at >= kPart; at += kPart)
            mmap(text_ + at, kPart, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, 0);
        close(file);
        std::fill_n(text_, kPart, ' ');
        std::fill(text_ + at, text_ + size, ' ');
        text_[0] = '7';
    }
    ~LongText() { munmap(text_, size_); }
    LongText(const LongText&) = delete;
    LongText& operator=(const LongText&) = delete;

    const char* text() const { return text_; }

private:
    static constexpr std::size_t kPart = 1 << 20;
    const std::size_t size_;
    char* text_;
};

TEST(ACheckedText, IsShorterThanFourGibibytes)
{
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 32;
    if (sizeof(std::size_t) < sizeof kLimit) GTEST_SKIP() << "no text can be as long here";
    const LongText tooLong(static_cast<std::size_t>(kLimit));
    EXPECT_EQ(CheckedText(tooLong.text()).refusal(), Refusal::TooLarge);
    EXPECT_EQ(CheckedText(tooLong.text() + 1).refusal(), Refusal::None);
}

TEST(ACheckedText, SaysWhereItStoppedBeingJson)
{
    EXPECT_EQ(refusedAt(""), 0u);
    EXPECT_EQ(refusedAt("  x"), 2u);
    EXPECT_EQ(refusedAt("[1,,2]"), 3u);
    EXPECT_EQ(refusedAt("[1 2]"), 3u);
    EXPECT_EQ(refusedAt("[1"), 2u);
    EXPECT_EQ(refusedAt("{\"a\":tru}"), 5u);
    EXPECT_EQ(refusedAt("{\"a\" 1}"), 5u);
    EXPECT_EQ(refusedAt("[\"abc"), 5u);
    EXPECT_EQ(refusedAt("[\"ab\\q\"]"), 4u);
    EXPECT_EQ(refusedAt("[\"\\u0000\\q\"]"), 8u);
    EXPECT_EQ(refusedAt("[-]"), 1u);
    EXPECT_EQ(refusedAt("[1.5.2]"), 4u);
    EXPECT_EQ(refusedAt(times(1001, "[").c_str()), 1000u);
    EXPECT_EQ(CheckedText("[]").refusedAt(), 0u);
}

/// How often memory may be refused to the check of a text, which says so each time.
int refusals(const std::string& text)
{
    return withMemoryRefused(
        [&] { return refusalOf(text); },
        [](Refusal refusal, bool refused) { EXPECT_EQ(refusal, refused ? Refusal::OutOfMemory : Refusal::None); });
}

TEST(WithoutMemory, ASmallTextIsChecked)
{
    EXPECT_EQ(refusals("{\"HEADER\":\"serviceList\",\"a\":[" + times(6, "{\"b\":\"\\u00e9\",\"c\":-1.5e3},") + "1]}"),
              0);
}

TEST(WithoutMemory, ALargeTextIsRefusedButNotAsOneThatIsNotJson)
{
    EXPECT_GT(refusals("[" + times(3000, "[],") + "1]"), 2);
    EXPECT_GT(refusals("[" + times(300, "\"" + std::string(300, 'a') + "\",") + "1]"), 0);
}

TEST(WithoutMemory, LongWhiteSpaceIsSteppedOver)
{
    const std::string text = "[" + times(30, std::string(300, ' ') + "1,") + "2]";
    const int refusals = withMemoryRefused(
        [&] {
            const CheckedText checked(text.c_str());
            return checked ? checked.value().items().size() : 0;
        },
        [](std::size_t items, bool) { EXPECT_EQ(items, 31u); });
    EXPECT_GT(refusals, 0);
}

TEST(WithoutMemory, ARareNumberIsNotTakenForOneThatIsNotJson)
{
    const OddPoint point;
    for (const std::string& text : {std::string("[1.5]"), "[1." + std::string(100, '5') + "]"}) {
        const int refusals = withMemoryRefused([&] { return refusalOf(text); },
                                               [](Refusal refusal, bool) { EXPECT_NE(refusal, Refusal::NotJson); });
        EXPECT_GT(refusals, 0);
        refuseAllocations([] { return true; });
        EXPECT_EQ(refusalOf(text), Refusal::OutOfMemory);
        refuseAllocations(nullptr);
    }
}

TEST(WithoutMemory, ALongNumberIsNotTakenForOneThatIsNotJson)
{
    refusals(std::string(64, '1'));  // asks cJSON how long numbers may be, when nothing has asked before
}

}  // namespace
}  // namespace OrvuTests
