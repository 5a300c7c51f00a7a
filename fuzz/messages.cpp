#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "fuzz/Fuzz.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/Catalogue.h"
#include "orvu/Explanation.h"

using namespace Orvu;

/// \file
/// Every message class that the factory makes, on any text. The class is the one that the text's "HEADER" names or,
/// where another byte than "{" precedes the text, the one whose type has that number.

namespace OrvuFuzz {
namespace {

struct Case {
    DataType type;
    std::string text;
};

Case caseOf(const std::uint8_t* bytes, std::size_t size)
{
    const std::string input = textOf(bytes, size);
    if (input.empty() || input[0] == '{') return {Serializable::deserializeHeader(input.c_str()), input};
    return {static_cast<DataType>(bytes[0]), input.substr(1)};
}

enum class Outcome { Read, Failed, NoNumber, NumberTooLarge };

template <class Read>
Outcome outcomeOf(Read read)
{
    try {
        return read() ? Outcome::Read : Outcome::Failed;
    } catch (const std::invalid_argument&) {
        return Outcome::NoNumber;
    } catch (const std::out_of_range&) {
        return Outcome::NumberTooLarge;
    }
}

bool areEqual(const JsonText& a, const JsonText& b)
{
    return a && b ? std::strcmp(a.get(), b.get()) == 0 : !a && !b;
}

/// Applications read a text, an exchange reads one that it has checked: both must give the same, also after a failed
/// read.
void compareRoads(DataType type, const char* text)
{
    const std::unique_ptr<Serializable> fromText(Serializable::factory(type));
    const std::unique_ptr<Serializable> fromCheck(Serializable::factory(type));
    if (!fromText) return;
    const CheckedText checked(text);
    const Outcome one = outcomeOf([&] { return fromText->deserialize(text); });
    const Outcome other = outcomeOf([&] { return fill(*fromCheck, checked, text); });
    require(one == other, "a text reads alike, checked before or not");
    require(areEqual(JsonText(fromText->serialize()), JsonText(fromCheck->serialize())),
            "a text leaves the same fields, checked before or not");
}

/// Whether cJSON, whatever its release, prints and parses `number` as the same.
bool isSurelyPrinted(const cJSON& number)
{
    constexpr double kOver15Digits = 1e15;
    return std::trunc(number.valuedouble) == number.valuedouble && std::fabs(number.valuedouble) < kOver15Digits &&
           !(number.valuedouble == 0 && std::signbit(number.valuedouble));
}

/// Whether a text reads as its reprint does by contract. Deeper numbers are those of children, which count as they
/// would print anyway.
bool isTheSamePrinted(const cJSON& tree, int levels = 3)
{
    if (cJSON_IsNumber(&tree) && !isSurelyPrinted(tree)) return false;
    if (levels == 0) return true;
    for (const cJSON* member = tree.child; member; member = member->next) {
        if (!isTheSamePrinted(*member, levels - 1)) return false;
    }
    return true;
}

struct FreePrinted {
    void operator()(char* text) const { cJSON_free(text); }
};

/// What cJSON prints from its own tree is the same message: spelling, white space, escapes and what follows the text do
/// not matter.
void compareWithReprint(DataType type, const char* text)
{
    const std::unique_ptr<Serializable> original(Serializable::factory(type));
    const std::unique_ptr<Serializable> again(Serializable::factory(type));
    const JsonTree tree = original ? parseJson(text) : nullptr;
    if (!tree || !isTheSamePrinted(*tree)) return;
    const std::unique_ptr<char, FreePrinted> reprint(cJSON_PrintUnformatted(tree.get()));
    if (!reprint) return;
    const Outcome one = outcomeOf([&] { return original->deserialize(text); });
    const Outcome other = outcomeOf([&] { return again->deserialize(reprint.get()); });
    require(one == other, "a text and its reprint read alike");
    require(areEqual(JsonText(original->serialize()), JsonText(again->serialize())),
            "a text and its reprint leave the same fields");
}

/// What a message that has read `text` writes; null where it cannot be written: a few values take more levels of
/// nesting than they came in.
JsonText rewritten(DataType type, const char* text, Outcome& outcome)
{
    const std::unique_ptr<Serializable> message(Serializable::factory(type));
    outcome = message ? outcomeOf([&] { return message->deserialize(text); }) : Outcome::Failed;
    return JsonText(outcome == Outcome::Read ? message->serialize() : nullptr);
}

/// The first two texts may differ from the next ones: what a message leaves out, or reads otherwise than it writes, is
/// gone after them. A negative number that travels as hexadecimal text is too large to be read back.
void requireFixedPoint(DataType type, const char* text)
{
    constexpr int kTexts = 4;
    JsonText before;
    for (int i = 1; i <= kTexts; ++i) {
        Outcome outcome;
        JsonText next = rewritten(type, before ? before.get() : text, outcome);
        require(i == 1 || outcome == Outcome::Read || outcome == Outcome::NumberTooLarge,
                "a message reads what it wrote");
        if (!next) return;
        require(i < kTexts || areEqual(before, next), "what was written twice is written the same from then on");
        before = std::move(next);
    }
}

/// An explanation has the same result as reading, and always has one.
void compareWithExplanation(DataType type, const char* text)
{
    const std::unique_ptr<Serializable> message(Serializable::factory(type));
    if (!message || !CheckedText(text)) return;
    const bool isRead = outcomeOf([&] { return message->deserialize(text); }) == Outcome::Read;
    require(explain(text, type).isRead == isRead, "a text is read where its explanation says so");
    explain(text);
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const OrvuFuzz::Case it = OrvuFuzz::caseOf(bytes, size);
    OrvuFuzz::compareRoads(it.type, it.text.c_str());
    OrvuFuzz::compareWithReprint(it.type, it.text.c_str());
    OrvuFuzz::requireFixedPoint(it.type, it.text.c_str());
    OrvuFuzz::compareWithExplanation(it.type, it.text.c_str());
    return 0;
}
