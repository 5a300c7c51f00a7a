#include <gtest/gtest.h>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "support/Samples.h"

/// The words that the schemas list for a key, and those of them of which they say that they are not read back.

namespace OrvuTests {
namespace {

/// A key that holds a word, or a list of words.
struct WordKey {
    std::string message;
    std::string parent;  ///< The key of the object in which it stands; "" for the message itself.
    std::string key;
    bool isList;
    std::set<std::string> words;
    std::set<std::string> notReadBack;
};

void PrintTo(const WordKey& word, std::ostream* out)
{
    *out << word.message << "." << word.key;
}

std::string nameOfKey(const testing::TestParamInfo<WordKey>& info)
{
    return info.param.message + "_" + info.param.key;
}

std::set<std::string> textsIn(const cJSON* list)
{
    std::set<std::string> texts;
    const cJSON* item = nullptr;
    cJSON_ArrayForEach(item, list)
    {
        texts.insert(cJSON_GetStringValue(item));
    }
    return texts;
}

void addKeysOf(std::vector<WordKey>& all, const std::string& message, const std::string& parent, const cJSON* schema)
{
    const cJSON* property = nullptr;
    cJSON_ArrayForEach(property, cJSON_GetObjectItem(schema, "properties"))
    {
        const cJSON* const items = cJSON_GetObjectItem(property, "items");
        const cJSON* const words = cJSON_GetObjectItem(items ? items : property, "enum");
        const cJSON* const notReadBack = cJSON_GetObjectItem(property, "x-notReadBack");
        if (words) {
            all.push_back({message, parent, property->string, items != nullptr, textsIn(words), textsIn(notReadBack)});
        }
        addKeysOf(all, message, property->string, property);
    }
}

std::vector<WordKey> wordKeys()
{
    std::vector<WordKey> all;
    for (const Sample& sample : writtenSamples())
        addKeysOf(all, sample.name, "", schemaOf(sample.name).get());
    return all;
}

class AKeyWithWords : public testing::TestWithParam<WordKey> {
protected:
    static cJSON* parentIn(const Tree& text)
    {
        const std::string& parent = GetParam().parent;
        return parent.empty() ? text.get() : cJSON_GetObjectItem(text.get(), parent.c_str());
    }

    /// The example of the message with `word` under the key.
    static std::string textWith(const std::string& word)
    {
        const Tree schema = schemaOf(GetParam().message);
        const Tree text(cJSON_Duplicate(cJSON_GetArrayItem(cJSON_GetObjectItem(schema.get(), "examples"), 0), true));
        cJSON* value = cJSON_CreateString(word.c_str());
        if (GetParam().isList) {
            cJSON* const list = cJSON_CreateArray();
            cJSON_AddItemToArray(list, value);
            value = list;
        }
        cJSON_DeleteItemFromObjectCaseSensitive(parentIn(text), GetParam().key.c_str());
        cJSON_AddItemToObject(parentIn(text), GetParam().key.c_str(), value);
        char* const written = cJSON_PrintUnformatted(text.get());
        const std::string copy = written;
        cJSON_free(written);
        return copy;
    }

    /// The word under the key in `text`, the last one of a list; "" without one.
    static std::string wordIn(const std::string& text)
    {
        const Tree tree = treeOf(text);
        const cJSON* word = cJSON_GetObjectItemCaseSensitive(parentIn(tree), GetParam().key.c_str());
        if (GetParam().isList) word = cJSON_GetArrayItem(word, cJSON_GetArraySize(word) - 1);
        return cJSON_IsString(word) ? cJSON_GetStringValue(word) : "";
    }

    /// Whether the word is written again by a message that has read it.
    static bool comesBack(const std::string& word)
    {
        for (const Sample& sample : samples()) {
            if (sample.name != GetParam().message) continue;
            const auto message = sample.filled();  // what it writes besides depends on flags, too
            return message->deserialize(textWith(word).c_str()) && wordIn(textOf(*message)) == word;
        }
        return false;
    }
};

TEST_P(AKeyWithWords, HasAllThoseReadBackThatItsSchemaDoesNotExclude)
{
    for (const std::string& word : GetParam().words) {
        if (word.empty() || word == "unknown") continue;  // what is not known is left out by some
        EXPECT_EQ(comesBack(word), GetParam().notReadBack.count(word) == 0) << word;
    }
}

INSTANTIATE_TEST_SUITE_P(Schemas, AKeyWithWords, testing::ValuesIn(wordKeys()), nameOfKey);

}  // namespace
}  // namespace OrvuTests
