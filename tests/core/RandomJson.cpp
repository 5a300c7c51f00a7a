#include "core/RandomJson.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

namespace OrvuTests {

Tree RandomJson::tree(int levels)
{
    return Tree(value(levels));
}

std::string RandomJson::text()
{
    std::string text(once(4) ? 0 : below(24), ' ');
    for (char& c : text)
        c = static_cast<char>(once(4) ? 1 + below(255) : 'a' + below(26));
    return text;
}

double RandomJson::number()
{
    static constexpr double kSpecial[] = {0.0,
                                          -0.0,
                                          0.1,
                                          -2.5,
                                          1e15,
                                          1e16,
                                          123456789012345678.0,
                                          1e308,
                                          -1e308,
                                          1e-308,
                                          5e-324,
                                          -5e-324,
                                          2147483648.0,
                                          -2147483649.0,
                                          2.9999999999999996,
                                          std::numeric_limits<double>::infinity(),
                                          -std::numeric_limits<double>::infinity(),
                                          std::numeric_limits<double>::quiet_NaN()};
    if (once(3)) return integer();
    if (once(2)) return kSpecial[below(std::size(kSpecial))];
    const std::uint64_t bits = (static_cast<std::uint64_t>(random_()) << 32) | random_();  // any value of all
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

int RandomJson::integer()
{
    static constexpr int kSpecial[] = {0, 1, -1, 9, 10, 99, 100, INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1};
    if (once(2)) return kSpecial[below(std::size(kSpecial))];
    return static_cast<int>(random_());
}

Tree RandomJson::anyValue()
{
    static constexpr const char* kTexts[] = {
        "1e400", "-1e400", "2.9999999999999996", "2147483648",   "-2147483649", "0.1",
        "-0.0",  "1e-400", "\"\\u0000\"",        "\"a\\u0000b\""};
    if (once(3)) return Tree(cJSON_CreateRaw(kTexts[below(std::size(kTexts))]));
    return tree(1);
}

Tree RandomJson::anyObject(const std::vector<std::string>& keys)
{
    Tree object(cJSON_CreateObject());
    for (const std::string& key : keys) {
        if (!once(6)) cJSON_AddItemToObject(object.get(), key.c_str(), anyValue().release());
    }
    return object;
}

cJSON* RandomJson::value(int levels)
{
    switch (below(levels > 0 ? 10 : 6)) {
        case 0:
            return cJSON_CreateNull();
        case 1:
            return cJSON_CreateBool(once(2));
        case 2:
        case 3:
            return cJSON_CreateNumber(number());
        case 4:
        case 5:
            return cJSON_CreateString(text().c_str());
        default:
            return container(levels - 1);
    }
}

cJSON* RandomJson::container(int levels)
{
    const bool isObject = once(2);
    cJSON* const container = isObject ? cJSON_CreateObject() : cJSON_CreateArray();
    for (unsigned left = below(6); left > 0; --left) {
        if (isObject)
            cJSON_AddItemToObject(container, text().c_str(), value(levels));
        else
            cJSON_AddItemToArray(container, value(levels));
    }
    return container;
}

}  // namespace OrvuTests
