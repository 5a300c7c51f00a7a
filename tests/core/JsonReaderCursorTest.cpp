#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "core/RandomJson.h"
#include "core/TestMessages.h"
#include "messages/core/CheckedText.h"
#include "messages/core/JsonReader.h"
#include "orvu/JsonAccess.h"
#include "support/Messages.h"
#include "support/Sanitizers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr unsigned kObjects = kIsSlow ? 4000 : 20000;

const std::vector<std::string> kContract = {"alpha", "beta", "gamma", "delta", "epsilon", "zeta"};

std::string shuffledCase(RandomJson& random, std::string name)
{
    for (char& c : name)
        c = static_cast<char>(random.once(2) ? std::toupper(c) : std::tolower(c));
    return name;
}

/// A key of the contract, mostly as it is; now and then "HEADER" or an unknown one.
std::string randomKey(RandomJson& random)
{
    switch (random.below(12)) {
        case 0:
            return "HEADER";
        case 1:
            return shuffledCase(random, "header");
        case 2:
            return random.once(2) ? "nonsense" : "";
        case 3:
            return shuffledCase(random, kContract[random.below(6)]);
        default:
            return kContract[random.below(6)];
    }
}

/// An object whose members each hold another number, or are of another kind.
Tree randomObject(RandomJson& random)
{
    Tree object(cJSON_CreateObject());
    for (int count = static_cast<int>(random.below(12)), i = 0; i < count; ++i) {
        cJSON* const value = random.once(8) ? cJSON_CreateString("text") : cJSON_CreateNumber(i + 1);
        cJSON_AddItemToObject(object.get(), randomKey(random).c_str(), value);
    }
    return object;
}

/// An object with the contract's keys in order, among which some are missing, doubled or preceded by "HEADER".
Tree usualObject(RandomJson& random)
{
    Tree object(cJSON_CreateObject());
    int value = 0;
    for (const std::string& key : kContract) {
        if (random.once(4)) cJSON_AddNumberToObject(object.get(), "HEADER", ++value);
        if (random.once(8)) cJSON_AddNumberToObject(object.get(), randomKey(random).c_str(), ++value);
        for (unsigned times = random.once(5) ? random.below(3) : 1; times > 0; --times)
            cJSON_AddNumberToObject(object.get(), key.c_str(), ++value);
    }
    return object;
}

std::vector<std::string> shuffled(RandomJson& random, std::vector<std::string> keys)
{
    for (std::size_t i = keys.size(); i > 1; --i)
        std::swap(keys[i - 1], keys[random.below(static_cast<unsigned>(i))]);
    return keys;
}

/// The members that cJSON finds for the keys of a contract, up to the first required one that it does not; -1 for those
/// not taken.
struct Found {
    std::vector<int> numbers;
    int fault = kNoFault;
};

Found foundByCJson(const cJSON& object, const std::vector<std::string>& keys, const std::string& required)
{
    Found found;
    for (const std::string& key : keys) {
        const cJSON* const item = found.fault == kNoFault ? cJSON_GetNumberItem(&object, key.c_str()) : nullptr;
        found.numbers.push_back(item ? item->valueint : -1);
        if (!item && key == required) found.fault = cJSON_GetObjectItem(&object, key.c_str()) ? kWrongKind : kMissing;
    }
    return found;
}

Found foundByReader(const cJSON& object, const std::vector<std::string>& keys, const std::string& required)
{
    Found found;
    const std::string text = taken(cJSON_PrintUnformatted(&object));
    const CheckedText checked(text.c_str());
    JsonReader json(checked.value());
    for (const std::string& key : keys) {
        int number = -1;
        key == required ? json.required(key.c_str(), number) : json.optional(key.c_str(), number);
        found.numbers.push_back(number);
    }
    found.fault = json.error();
    return found;
}

void expectTheSame(const cJSON& object, const std::vector<std::string>& keys, const std::string& required)
{
    const Found expected = foundByCJson(object, keys, required);
    const Found found = foundByReader(object, keys, required);
    EXPECT_EQ(found.numbers, expected.numbers) << taken(cJSON_PrintUnformatted(&object));
    EXPECT_EQ(found.fault, expected.fault) << taken(cJSON_PrintUnformatted(&object));
}

TEST(TheCursor, FindsWhatCJsonFindsInAnyObject)
{
    for (unsigned seed = 1; seed <= kObjects && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const Tree object = randomObject(random);
        expectTheSame(*object, kContract, "");
        expectTheSame(*object, shuffled(random, kContract), "");
    }
}

TEST(TheCursor, FindsWhatCJsonFindsInNearlyTheUsualOrder)
{
    for (unsigned seed = 1; seed <= kObjects && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const Tree object = usualObject(random);
        expectTheSame(*object, kContract, "");
        expectTheSame(*object, shuffled(random, kContract), "");
    }
}

TEST(TheCursor, FaultsWhereCJsonFindsNothing)
{
    for (unsigned seed = 1; seed <= kObjects && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const std::string required = kContract[random.below(6)];
        expectTheSame(*randomObject(random), kContract, required);
        expectTheSame(*usualObject(random), kContract, required);
    }
}

TEST(TheCursor, FindsNothingInWhatIsNotAnObject)
{
    for (unsigned seed = 1; seed <= 500 && !testing::Test::HasFailure(); ++seed) {
        const Tree tree = RandomJson(seed).tree(3);
        expectTheSame(*tree, kContract, "alpha");
    }
}

/// The numbers read for "a", "b" and "c".
std::vector<int> abc(const char* text)
{
    return foundByReader(*treeOf(text), {"a", "b", "c"}, "").numbers;
}

TEST(TheCursor, PassesOverAHeaderAnywhere)
{
    EXPECT_EQ(abc(R"({"HEADER": "x", "a": 1, "b": 2, "c": 3})"), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(abc(R"({"a": 1, "header": "x", "b": 2, "HEADER": "y", "HEADER": "z", "c": 3})"),
              (std::vector<int>{1, 2, 3}));
}

TEST(TheCursor, TakesTheFirstOfEqualMembers)
{
    EXPECT_EQ(abc(R"({"a": 1, "a": 2, "b": 3, "c": 4})"), (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(abc(R"({"b": 1, "a": 2, "b": 3, "c": 4})"), (std::vector<int>{2, 1, 4}));
    EXPECT_EQ(abc(R"({"C": 1, "a": 2, "b": 3, "c": 4})"), (std::vector<int>{2, 3, 1}));
    EXPECT_EQ(abc(R"({"a": 1, "x": 9, "c": 2, "b": 3, "c": 4})"), (std::vector<int>{1, 3, 2}));
}

TEST(TheCursor, GoesOnAfterAMissingMember)
{
    EXPECT_EQ(abc(R"({"a": 1, "c": 3})"), (std::vector<int>{1, -1, 3}));
    EXPECT_EQ(abc(R"({"b": 2})"), (std::vector<int>{-1, 2, -1}));
    EXPECT_EQ(abc("{}"), (std::vector<int>{-1, -1, -1}));
}

TEST(TheCursor, FindsAMemberWithAnEmptyKey)
{
    EXPECT_EQ(foundByReader(*treeOf(R"({"a": 1, "": 2})"), {""}, "").numbers, (std::vector<int>{2}));
}

}  // namespace
}  // namespace OrvuTests
