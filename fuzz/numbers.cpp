#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/Fuzz.h"
#include "orvu/ServiceComponents.h"
#include "orvu/ServiceContext.h"

using namespace Orvu;

/// \file
/// The texts that are read as numbers: service locators, and the decimal or hexadecimal numbers of components.

namespace OrvuFuzz {
namespace {

bool areEqual(const ServiceContext::ServiceContextData& a, const ServiceContext::ServiceContextData& b)
{
    return a.firstId == b.firstId && a.secondId == b.secondId && a.serviceTypeDigit == b.serviceTypeDigit &&
           a.serviceNumberDigit == b.serviceNumberDigit && a.valid == b.valid && a.currentService == b.currentService &&
           a.allServices == b.allServices;
}

/// The numbers between the dots, one by one.
std::vector<long long> numbersOf(std::string text)
{
    std::vector<long long> numbers;
    for (;;) {
        const std::size_t dot = text.find('.');
        numbers.push_back(
            std::clamp<long long>(std::strtoll(text.substr(0, dot).c_str(), nullptr, 10), INT_MIN, INT_MAX));
        if (dot == std::string::npos) return numbers;
        text.erase(0, dot + 1);
    }
}

ServiceContext::ServiceContextData expectedLocator(const std::string& text)
{
    ServiceContext::ServiceContextData data;
    data.currentService = text == "current-service";
    data.allServices = text == "all-services";
    data.valid = data.currentService || data.allServices;
    const std::vector<long long> numbers = numbersOf(text);
    if (numbers.size() != 3 || *std::min_element(numbers.begin(), numbers.end()) < 1 || numbers[2] > 99) return data;
    data.valid = true;
    data.firstId = static_cast<int>(numbers[0]);
    data.secondId = static_cast<int>(numbers[1]);
    data.serviceTypeDigit = static_cast<int>(numbers[2]) / 10;
    data.serviceNumberDigit = static_cast<int>(numbers[2]) % 10;
    return data;
}

/// That a locator can be read back whose service is of type 0 or 1, and no other one.
void checkGenerated(const std::string& bytes)
{
    unsigned ids[3];
    if (bytes.size() < sizeof ids) return;
    std::memcpy(ids, bytes.data(), sizeof ids);
    const auto data = ServiceContext::parse(ServiceContext::generateStringId(ids[0], ids[1], ids[2]));
    const bool isReadable = ids[0] > 0 && ids[1] > 0 && (ids[2] & 0x10u) == 0;
    require(data.valid == isReadable, "a locator of a service of type 0 or 1 can be read back");
    if (!isReadable || ids[0] > INT_MAX || ids[1] > INT_MAX) return;
    require(static_cast<unsigned>(data.firstId) == ids[0] && static_cast<unsigned>(data.secondId) == ids[1] &&
                static_cast<unsigned>(data.serviceTypeDigit) == (ids[2] & 8u) &&
                static_cast<unsigned>(data.serviceNumberDigit) == (ids[2] & 7u) + 1,
            "a locator says what it was made of");
}

enum class Kind { Number, NoDigits, TooLarge };

struct Number {
    Kind kind = Kind::NoDigits;
    long long value = 0;
};

Number readNumber(const std::string& text)
{
    try {
        return {Kind::Number, validateStringNumber(text)};
    } catch (const std::invalid_argument&) {
        return {Kind::NoDigits, 0};
    } catch (const std::out_of_range&) {
        return {Kind::TooLarge, 0};
    }
}

/// The value of a digit or letter; 36 for anything else.
int digitOf(char c)
{
    static constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const char* const at = c != '\0' ? std::strchr(kDigits, c) : nullptr;
    return at ? static_cast<int>(at - kDigits) % 36 : 36;
}

Number expectedNumber(const std::string& text)
{
    constexpr char kBlanks[] = "\t\n\v\f\r ";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const std::string word = text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
    const bool isHex = word.size() >= 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
    const int base = isHex ? 16 : 10;
    Number number;
    for (const char c : word.substr(isHex ? 2 : 0)) {
        if (digitOf(c) >= base) return {Kind::Number, -1};
        number.value = std::min<long long>(number.value * base + digitOf(c), INT_MAX + 1LL);
        number.kind = number.value > INT_MAX ? Kind::TooLarge : Kind::Number;
    }
    return number;
}

void checkNumber(const std::string& text)
{
    const Number is = readNumber(text);
    const Number expected = expectedNumber(text);
    require(is.kind == expected.kind, "a text is a number, is none, or stands for one that is too large");
    require(is.kind != Kind::Number || is.value == expected.value, "a number text gives its number");
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using namespace OrvuFuzz;
    const std::string text = textOf(bytes, size);
    require(areEqual(ServiceContext::parse(text), expectedLocator(text)), "a locator is read as its rules say");
    checkGenerated(text);
    checkNumber(text);
    return 0;
}
