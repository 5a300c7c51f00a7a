#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "golden/Marks.h"
#include "messages/core/NewMessage.h"
#include "orvu/Orvu.h"
#include "support/Messages.h"
#include "support/SampleFields.h"
#include "support/Samples.h"

/// What is lost between an object that is written and the one that is read: every public field, as the library itself
/// behaves. A field that does not come back must say so in its description in the header.

namespace OrvuTests {
namespace {

using Orvu::Serializable;

template <class Value>
constexpr bool isMessage = std::is_base_of_v<Serializable, Value>;

/// Whether the message could read `text`; one that throws could not.
bool reads(Serializable& message, const std::string& text)
{
    try {
        return message.deserialize(text.c_str());
    } catch (const std::logic_error&) {
        return false;
    }
}

/// What a child tells when it has been written and read once by itself: what it loses is its own matter.
template <class Message>
std::string shownMessage(Message& child)
{
    child.serializeHeader(false);
    const std::string text = textOf(child);
    const std::unique_ptr<Message> again(Orvu::newMessage<Message>(child.getDataType()));
    if (!reads(*again, text)) return text;
    again->serializeHeader(false);
    return textOf(*again);
}

template <class Value>
constexpr bool isList = false;
template <class Item>
constexpr bool isList<std::vector<Item>> = true;
template <class Item, std::size_t kSize>
constexpr bool isList<Item[kSize]> = true;

/// The value of a field.
template <class Value>
std::string shown(Value& value)
{
    if constexpr (std::is_same_v<Value, std::string>) {
        return value;
    } else if constexpr (isMessage<Value>) {
        return shownMessage(value);
    } else if constexpr (std::is_same_v<Value, unsigned char*>) {
        return value ? "bytes" : "null";
    } else if constexpr (std::is_pointer_v<Value>) {
        return value ? shown(*value) : "null";
    } else if constexpr (isList<Value>) {
        std::string all;
        for (auto& item : value)
            all += shown(item) + ";";
        return all;
    } else {
        return std::to_string(static_cast<long long>(value));
    }
}

/// Gives a field that still has its default another value; a sample fills what this cannot.
template <class Value>
void change(Value& value)
{
    if constexpr (std::is_same_v<Value, std::string>) {
        value = "another";
    } else if constexpr (std::is_same_v<Value, bool>) {
        value = !value;
    } else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>) {
        value = static_cast<Value>(static_cast<int>(value) == 1 ? 2 : 1);
    }
}

template <class Value>
void collect(std::vector<Serializable*>& children, Value& value)
{
    if constexpr (isMessage<Value>) children.push_back(&value);
}

template <class Value>
void collect(std::vector<Serializable*>& children, Value*& pointer)
{
    if (pointer) collect(children, *pointer);
}

template <class Value>
void collect(std::vector<Serializable*>& children, std::vector<Value>& values)
{
    for (Value& value : values)
        collect(children, value);
}

/// A public field of a message, or its serialize(), with its description in the header.
struct Described {
    std::string owner;
    std::string name;
    std::string description;
    std::string (*shownIn)(Serializable&);
    void (*changeIn)(Serializable&);
    void (*childrenIn)(std::vector<Serializable*>&, Serializable&);
};

const std::vector<Described>& rows()
{
    static const std::vector<Described> kRows = {
#define FIELD(Class, field, text)                                                           \
    {#Class,                                                                                \
     #field,                                                                                \
     text,                                                                                  \
     [](Serializable& message) { return shown(static_cast<Orvu::Class&>(message).field); }, \
     [](Serializable& message) { change(static_cast<Orvu::Class&>(message).field); },       \
     [](std::vector<Serializable*>& children, Serializable& message) {                      \
         collect(children, static_cast<Orvu::Class&>(message).field);                       \
     }},
#define WRITER(Class, text) {#Class, "serialize", text, nullptr, nullptr, nullptr},
#define ENUMERATOR(...)
#define WORDS(...)
#include "fields.inc"
#undef FIELD
#undef WRITER
#undef ENUMERATOR
#undef WORDS
    };
    return kRows;
}

/// The classes of messages, each with the name of a message; a class may serve several types.
const std::vector<std::pair<std::string, std::string>>& classes()
{
    static const std::vector<std::pair<std::string, std::string>> kClasses = {
#define ORVU_ROW_AS(Type, Class, wireName, ...) {#Class, wireName},
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
        {"NCLDocument", "NCLDocument"},
    };
    return kClasses;
}

const Sample& sampleOf(const std::string& owner)
{
    const auto row =
        std::find_if(classes().begin(), classes().end(), [&](const auto& it) { return it.first == owner; });
    return *std::find_if(samples().begin(), samples().end(),
                         [&](const Sample& sample) { return row != classes().end() && sample.name == row->second; });
}

std::vector<Described> fields()
{
    std::vector<Described> all;
    std::copy_if(rows().begin(), rows().end(), std::back_inserter(all),
                 [](const Described& row) { return row.shownIn != nullptr; });
    return all;
}

std::vector<Described> writers()
{
    std::vector<Described> all;
    std::copy_if(rows().begin(), rows().end(), std::back_inserter(all),
                 [](const Described& row) { return row.shownIn == nullptr; });
    return all;
}

void PrintTo(const Described& row, std::ostream* out)
{
    *out << row.owner << "::" << row.name << ", described as \"" << row.description << '"';
}

std::string nameOf(const testing::TestParamInfo<Described>& info)
{
    return info.param.owner + "_" + info.param.name;
}

class AField : public testing::TestWithParam<Described> {
protected:
    static std::unique_ptr<Serializable> empty() { return sampleOf(GetParam().owner).empty(); }

    /// A message whose fields are filled, this one in any case.
    static std::unique_ptr<Serializable> filled()
    {
        auto message = sampleOf(GetParam().owner).filled();
        const std::string initial = GetParam().shownIn(*empty());
        if (GetParam().shownIn(*message) == initial) GetParam().changeIn(*message);
        EXPECT_NE(GetParam().shownIn(*message), initial) << "The sample must fill this field.";
        return message;
    }

    /// Whether the field has the same value in the object that is read from what `message` writes.
    static bool survives(Serializable& message)
    {
        const std::string before = GetParam().shownIn(message);
        message.serializeHeader(true);
        const auto other = empty();
        reads(*other, textOf(message));
        return GetParam().shownIn(*other) == before;
    }
};

TEST_P(AField, SaysWhenItDoesNotSurviveTheWire)
{
    const bool survivesAll = survives(*filled()) && survives(*empty());
    const std::string description = GetParam().description;
    if (survivesAll) {
        EXPECT_FALSE(hasOneOf(kLost, description));
    } else {
        EXPECT_TRUE(hasOneOf(kLost, description) || hasOneOf(kLostSometimes, description));
    }
}

TEST(TheHeaders, ShowTheFieldsOfEveryMessageThatHasSome)
{
    const std::vector<Described> all = fields();
    for (const auto& row : classes()) {
        const std::string& owner = row.first;
        const bool hasFields = textOf(*sampleOf(owner).filled()).find(',') != std::string::npos;
        const bool showsSome =
            std::any_of(all.begin(), all.end(), [&](const Described& field) { return field.owner == owner; });
        EXPECT_TRUE(showsSome || !hasFields) << owner;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AField, testing::ValuesIn(fields()), nameOf);

class AMessageWithChildren : public testing::TestWithParam<Described> {
protected:
    /// The messages that the fields of `message` hold.
    static std::vector<Serializable*> childrenOf(Serializable& message)
    {
        std::vector<Serializable*> children;
        for (const Described& field : fields()) {
            if (field.owner == GetParam().owner) field.childrenIn(children, message);
        }
        return children;
    }

    static bool hasHeader(Serializable& message) { return textOf(message).find("\"HEADER\"") != std::string::npos; }
};

TEST_P(AMessageWithChildren, SaysWhenWritingTakesTheirHeader)
{
    const auto message = sampleOf(GetParam().owner).filled();
    std::vector<Serializable*> children = childrenOf(*message);
    const auto withoutHeader =
        std::partition(children.begin(), children.end(), [](Serializable* child) { return hasHeader(*child); });
    textOf(*message);
    const bool takesHeader =
        !std::all_of(children.begin(), withoutHeader, [](Serializable* child) { return hasHeader(*child); });
    EXPECT_EQ(takesHeader, GetParam().description.find("serializeHeader(true)") != std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AMessageWithChildren, testing::ValuesIn(writers()), nameOf);

}  // namespace
}  // namespace OrvuTests
