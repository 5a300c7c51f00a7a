#include <algorithm>
#include <cstdio>
#include <cstring>

#include "orvu/ServiceComponents.h"

namespace Orvu {
namespace {

constexpr char kWhiteSpace[] = "\t\n\v\f\r ";
constexpr int kMalformed = -1;

void lowerCase(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

}  // namespace

char* convertIntToStringHex(int value)
{
    char text[sizeof "0xffffffff"];
    std::snprintf(text, sizeof text, "0x%02x", static_cast<unsigned>(value));
    return strdup(text);
}

int validateStringNumber(std::string text)
{
    rtrim(text);
    ltrim(text);
    lowerCase(text);
    const bool isHex = text.compare(0, 2, "0x") == 0;
    if (isHex) text.erase(0, 2);
    if (text.find_first_not_of(isHex ? "0123456789abcdef" : "0123456789") != std::string::npos) return kMalformed;
    return std::stoi(text, nullptr, isHex ? 16 : 10);
}

void rtrim(std::string& text)
{
    text.erase(text.find_last_not_of(kWhiteSpace) + 1);
}

void ltrim(std::string& text)
{
    text.erase(0, text.find_first_not_of(kWhiteSpace));
}

}  // namespace Orvu
