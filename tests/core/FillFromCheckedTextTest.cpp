#include <algorithm>
#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/RandomJson.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/Catalogue.h"
#include "messages/core/Exact.h"
#include "orvu/Services.h"
#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// What came of a read.
std::string outcomeOf(const std::function<bool()>& read)
{
    try {
        return read() ? "true" : "false";
    } catch (const std::invalid_argument&) {
        return "invalid argument";
    } catch (const std::out_of_range&) {
        return "out of range";
    }
}

/// That a message reads the same from a text and from the check of it.
void expectTheSame(const Sample& sample, const char* text)
{
    const std::unique_ptr<Serializable> byCheck = sample.empty();
    const std::unique_ptr<Serializable> byText = sample.empty();
    const CheckedText checked(text);
    EXPECT_EQ(outcomeOf([&] { return fill(*byCheck, checked, text); }),
              outcomeOf([&] { return byText->deserialize(text); }))
        << text;
    EXPECT_EQ(withoutBornTimes(textOf(*byCheck)), withoutBornTimes(textOf(*byText))) << text;
}

/// The value with some of its parts dropped, doubled, replaced, or with keys in another letter case.
Tree disturbed(RandomJson& random, const cJSON& value)
{
    if (random.once(20)) return random.tree(2);
    if (!cJSON_IsArray(&value) && !cJSON_IsObject(&value)) return Tree(cJSON_Duplicate(&value, true));
    Tree copy(cJSON_IsObject(&value) ? cJSON_CreateObject() : cJSON_CreateArray());
    for (const cJSON* item = value.child; item; item = item->next) {
        for (unsigned times = random.once(12) ? random.below(3) : 1; times > 0; --times) {
            cJSON* const part = disturbed(random, *item).release();
            if (!item->string) {
                cJSON_AddItemToArray(copy.get(), part);
                continue;
            }
            std::string key = item->string;
            if (random.once(10)) std::transform(key.begin(), key.end(), key.begin(), ::toupper);
            cJSON_AddItemToObject(copy.get(), key.c_str(), part);
        }
    }
    return copy;
}

/// The messages that the factory makes, as samples.
std::vector<const Sample*> receivedSamples()
{
    std::vector<const Sample*> received;
    for (const Sample& sample : samples()) {
        const std::unique_ptr<Serializable> own = sample.empty();
        const std::unique_ptr<Serializable> made(Serializable::factory(own->getDataType()));
        if (made && *typeOf(*made) == *typeOf(*own)) received.push_back(&sample);
    }
    return received;
}

TEST(FillingFromACheckedText, DoesWhatReadingTheTextDoes)
{
    RandomJson random(1);
    for (const Sample* sample : receivedSamples()) {
        SCOPED_TRACE(sample->name);
        const Tree tree = treeOf(textOf(*sample->filled()));
        for (int i = 0; i < 100; ++i)
            expectTheSame(*sample, taken(cJSON_PrintUnformatted(disturbed(random, *tree).get())).c_str());
    }
}

TEST(FillingFromACheckedText, DoesWhatReadingTheTextDoesForWhatIsNotAnObject)
{
    for (const Sample* sample : receivedSamples()) {
        SCOPED_TRACE(sample->name);
        for (const char* text : {"{}", "[]", "5", "null", R"("text")", "", "{", "no JSON", R"({"time": "1"} and more)"})
            expectTheSame(*sample, text);
    }
}

TEST(FillingFromACheckedText, ReadsANumberAsOfATextOfItsOwn)
{
    Service service;
    const char* const text = R"({"serviceId": 2.9999999999999996, "transportStreamId": 1e400})";
    EXPECT_TRUE(fill(service, CheckedText(text), text));
    EXPECT_EQ(service.serviceId, 2);
    EXPECT_EQ(service.transportStreamId, 2147483647);
}

}  // namespace
}  // namespace OrvuTests
