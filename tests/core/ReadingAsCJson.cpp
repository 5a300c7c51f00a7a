#include "core/ReadingAsCJson.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "messages/core/CJsonBridge.h"
#include "messages/core/CheckedText.h"
#include "messages/core/JsonValue.h"
#include "messages/core/MemberFinder.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

void require(bool holds, const char* sentence)
{
    if (!holds) throw std::logic_error(sentence);
}

std::string printedBy(const cJSON& item)
{
    const JsonText text(cJSON_PrintUnformatted(&item));
    return text ? text.get() : "";
}

/// The value that a number or boolean has once its text is parsed; false for any other value.
bool integerIn(const cJSON* item, int& value)
{
    if (!cJSON_IsNumber(item) && !cJSON_IsBool(item)) return false;
    value = item->valueint;
    return true;
}

void compareIntegers(JsonValue view, const cJSON& item)
{
    int expected = -77;
    int found = -77;
    require(view.integer(found) == integerIn(&item, expected), "is a number or a boolean");
    require(found == expected, "has its integer value");
    const JsonTree nested = parseJson(printedBy(item).c_str());
    expected = found = -77;
    require(view.nested().integer(found) == integerIn(nested.get(), expected), "is a number when nested");
    require(found == expected, "has its integer value when nested");
}

std::string gathered(JsonValue view)
{
    std::string text;
    TextRuns runs(view);
    for (std::string_view run = runs.next(); !run.empty(); run = runs.next())
        text += run;
    require(runs.next().empty(), "stays at the end of a text");
    return text;
}

void compareTexts(JsonValue view, const char* expected)
{
    require(view.text() == expected, "is the same text");
    require(gathered(view) == expected, "is the same text in runs");
    require(view.equals(std::string_view(expected)), "is equal to its text");
    require(!view.equals(std::string(expected) + "x"), "is not equal to a longer text");
    require(*expected == '\0' || !view.equals(std::string_view(expected + 1)), "is not equal to another text");
}

void compareKinds(JsonValue view, const cJSON& item)
{
    require(view.isText() == cJSON_IsString(&item), "is a text");
    require(view.isNumber() == cJSON_IsNumber(&item), "is a number");
    require(view.isBoolean() == cJSON_IsBool(&item), "is a boolean");
    require(view.isNull() == cJSON_IsNull(&item), "is null");
    require(view.isObject() == cJSON_IsObject(&item), "is an object");
    require(view.isArray() == cJSON_IsArray(&item), "is an array");
}

std::string otherCase(std::string key)
{
    for (char& c : key)
        c = static_cast<char>(std::islower(static_cast<unsigned char>(c)) ? std::toupper(c) : std::tolower(c));
    return key;
}

/// Keys to ask for: those of the object, others that are close to them, and one that no object has.
std::vector<std::string> keysOf(const cJSON& object)
{
    std::vector<std::string> keys;
    for (const cJSON* item = object.child; item; item = item->next) {
        const std::string key = item->string ? item->string : "";
        keys.push_back(key);
        if (keys.size() < 100) keys.insert(keys.end(), {otherCase(key), key + "x", key.substr(0, key.size() / 2)});
    }
    keys.insert(keys.end(), {"", "HEADER", "missing"});
    return keys;
}

void compareMember(MemberFinder& finder, const cJSON& object, const std::string& key,
                   const std::vector<JsonValue>& items)
{
    if (key.find_first_of("\"\\") != std::string::npos) return;  // no contract asks for such a key
    const cJSON* const expected = cJSON_GetObjectItem(&object, key.c_str());
    const JsonValue found = finder.find(key.c_str());
    require(static_cast<bool>(found) == (expected != nullptr), "finds a member or none");
    if (!expected) return;
    std::size_t number = 0;
    for (const cJSON* item = object.child; item != expected; item = item->next)
        ++number;
    require(found.source().data() == items[number].source().data(), "finds the first member of a name");
}

/// That keys are found in the order of the text, backwards, and in between.
void compareLookups(JsonValue view, const cJSON& item, const std::vector<JsonValue>& items)
{
    const std::vector<std::string> keys = keysOf(item);
    MemberFinder inOrder(view);
    for (const cJSON* member = item.child; member; member = member->next)
        if (member->string) compareMember(inOrder, item, member->string, items);
    MemberFinder forwards(view);
    MemberFinder backwards(view);
    MemberFinder mixed(view);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        compareMember(forwards, item, keys[i], items);
        compareMember(backwards, item, keys[keys.size() - 1 - i], items);
        compareMember(mixed, item, keys[i * 7 % keys.size()], items);
    }
}

void compareKeys(JsonValue view, const cJSON& item, const std::vector<JsonValue>& items)
{
    std::size_t number = 0;
    const cJSON* child = cJSON_IsObject(&item) ? item.child : nullptr;
    for (const JsonMember& member : view.members()) {
        require(child != nullptr, "has no more members");
        require(member.key.text() == child->string, "has the same key");
        require(member.value.source().data() == items[number++].source().data(), "has the same value under a key");
        child = child->next;
    }
    require(child == nullptr, "has no fewer members");
}

void compareValues(JsonValue view, const cJSON& item, int level);

void compareItems(JsonValue view, const cJSON& item, int level)
{
    std::vector<JsonValue> items;
    for (const JsonValue each : view.items())
        items.push_back(each);
    std::size_t number = 0;
    for (const cJSON* child = item.child; child; child = child->next, ++number) {
        require(number < items.size(), "has no fewer items");
        const JsonValue next = items[number].next();
        require(static_cast<bool>(next) == (child->next != nullptr), "has an item after an item");
        require(!next || next.source().data() == items[number + 1].source().data(), "has the next item after an item");
        compareValues(items[number], *child, level + 1);
    }
    require(number == items.size(), "has no more items");
    compareKeys(view, item, items);
    compareLookups(view, item, items);
}

void compareValues(JsonValue view, const cJSON& item, int level)
{
    compareKinds(view, item);
    if (cJSON_IsString(&item)) compareTexts(view, item.valuestring);
    require(view.isText() || (view.text().empty() && !view.equals("")), "is not a text");
    compareIntegers(view, item);
    if (level < 4) require(printedBy(*treeInCJson(view.source())) == printedBy(item), "is the JSON of its value");
    compareItems(view, item, level);
}

void compare(const char* text)
{
    const CheckedText json(text);
    const JsonTree tree = parseJson(text);
    require(static_cast<bool>(json) == (tree != nullptr), "is JSON or not");
    require(json.refusedAt() <= std::strlen(text), "is refused within the text");
    require(static_cast<bool>(json.value()) == static_cast<bool>(json), "has a value when it is JSON");
    if (tree) compareValues(json.value(), *tree, 0);
}

}  // namespace

std::string differenceFromCJson(const std::string& text)
{
    const std::unique_ptr<char[]> exact(new char[text.size() + 1]);  // a sanitizer sees a read past its end
    std::memcpy(exact.get(), text.c_str(), text.size() + 1);
    try {
        compare(exact.get());
    } catch (const std::logic_error& difference) {
        return difference.what();
    }
    return "";
}

}  // namespace OrvuTests
