#include "messages/core/KeyLister.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "messages/core/JsonReader.h"
#include "messages/core/TextPlace.h"
#include "messages/core/Vocabulary.h"

namespace Orvu {
namespace {

KeyDescription::Kind kindOf(Expected::Kind expected)
{
    switch (expected) {
        case Expected::Anything:
            break;
        case Expected::Nothing:
            return KeyDescription::Nothing;
        case Expected::Text:
            return KeyDescription::Text;
        case Expected::Number:
            return KeyDescription::Number;
        case Expected::Boolean:
            return KeyDescription::Boolean;
        case Expected::NumberOrText:
            return KeyDescription::NumberOrText;
        case Expected::Word:
            return KeyDescription::Word;
        case Expected::Object:
        case Expected::Child:
            return KeyDescription::Object;
        case Expected::Children:
            return KeyDescription::Objects;
        case Expected::Texts:
            return KeyDescription::Texts;
        case Expected::Words:
            return KeyDescription::Words;
        case Expected::Numbers:
            return KeyDescription::Numbers;
    }
    return KeyDescription::Anything;
}

/// An object with all these keys. Of one that may hold several kinds, each round takes another.
std::string objectWith(const std::vector<KeyDescription>& keys, unsigned round);

std::string valueOf(const KeyDescription& key, unsigned round)
{
    switch (key.kind) {
        case KeyDescription::Text:
            return R"("")";
        case KeyDescription::Word:
            return joined({"\"", key.words[round % key.words.size()], "\""});
        case KeyDescription::Object:
            return objectWith(key.keys, round);
        case KeyDescription::Objects:
            return '[' + objectWith(key.keys, round) + ']';
        case KeyDescription::Texts:
        case KeyDescription::Words:
        case KeyDescription::Numbers:
            return "[]";
        default:
            return "0";
    }
}

std::string objectWith(const std::vector<KeyDescription>& keys, unsigned round)
{
    std::string text;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto isSame = [&](const KeyDescription& other) { return other.key == keys[i].key; };
        const auto variants = static_cast<unsigned>(std::count_if(keys.begin(), keys.end(), isSame));
        const auto before = static_cast<unsigned>(std::count_if(keys.begin(), keys.begin() + i, isSame));
        if (round % variants != before) continue;
        text += joined({text.empty() ? "" : ",", "\"", keys[i].key, "\":", valueOf(keys[i], round)});
    }
    return '{' + text + '}';
}

}  // namespace

std::vector<KeyDescription> KeyLister::keysOf(const CatalogueEntry& entry)
{
    constexpr unsigned kQuietRounds = 3;  // more than there are kinds for one key
    for (unsigned round = 0, quiet = 0; quiet < kQuietRounds; ++round) {
        hasLearnt_ = false;
        readOnce(entry, objectWith(keys_, round));
        quiet = hasLearnt_ ? 0 : quiet + 1;
    }
    return std::move(keys_);
}

void KeyLister::readOnce(const CatalogueEntry& entry, const std::string& text)
{
    CheckedText checked(text.c_str());
    if (!checked) throw std::bad_alloc();
    checked.setWitness(this);
    const std::unique_ptr<Serializable> scratch(entry.make(entry.type));
    JsonReader json(checked.value());
    objects_.clear();
    json.begin(&entry.contract());
    entry.contract().read(json, *scratch);
    json.end();
}

void KeyLister::begin(JsonValue, const Contract* contract)
{
    const bool isAround = contract && std::any_of(objects_.begin(), objects_.end(),
                                                  [&](const Object& object) { return object.contract == contract; });
    Keys* keys = objects_.empty() ? &keys_ : nullptr;
    if (!objects_.empty() && !isAround && objects_.back().keys)
        keys = &(*objects_.back().keys)[objects_.back().last].keys;
    objects_.push_back({keys, contract, 0, false});
}

void KeyLister::asked(const char* key, const Expected& expected, JsonValue found)
{
    Object& object = objects_.back();
    if (!object.keys) return;
    object.last = learn(*object.keys, key, expected);
    object.hasFound = static_cast<bool>(found);
}

void KeyLister::took(JsonValue, const Expected& expected)
{
    Object& object = objects_.back();
    if (!object.keys) return;
    Keys& keys = *object.keys;
    const std::size_t next = object.last + 1;
    if (next == keys.size() || !keys[next].key.empty()) {
        keys.insert(keys.begin() + static_cast<std::ptrdiff_t>(next), {"", kindOf(expected.kind), false, {}, {}});
        hasLearnt_ = true;
    }
    object.last = next;
}

/// A key is required when its absence is a fault.
void KeyLister::failed(const char*)
{
    const Object& object = objects_.back();
    if (!object.keys || object.keys->empty() || object.hasFound) return;
    bool& isRequired = (*object.keys)[object.last].isRequired;
    hasLearnt_ = hasLearnt_ || !isRequired;
    isRequired = true;
}

/// Which key of the object this is.
std::size_t KeyLister::learn(Keys& keys, const char* key, const Expected& expected)
{
    const KeyDescription::Kind kind = kindOf(expected.kind);
    std::size_t at = 0;
    for (; at < keys.size(); ++at) {
        if (keys[at].key != key) continue;
        if (keys[at].kind == kind || kind == KeyDescription::Anything) return at;
        if (keys[at].kind == KeyDescription::Anything) break;
    }
    if (at == keys.size()) keys.push_back({key, kind, false, {}, {}});
    keys[at].kind = kind;
    if (expected.words) {
        for (const std::string_view word : expected.words->words())
            keys[at].words.emplace_back(word);
    }
    hasLearnt_ = true;
    return at;
}

}  // namespace Orvu
