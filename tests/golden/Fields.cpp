#include "golden/Fields.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <type_traits>

#include "messages/core/NewMessage.h"
#include "orvu/Orvu.h"
#include "support/Messages.h"

namespace OrvuTests {

using Orvu::Serializable;

bool reads(Serializable& message, const std::string& text)
{
    try {
        return message.deserialize(text.c_str());
    } catch (const std::logic_error&) {
        return false;
    }
}

namespace {

template <class Value>
constexpr bool isMessage = std::is_base_of_v<Serializable, Value>;

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
    if constexpr (std::is_same_v<std::remove_const_t<Value>, std::string>) {
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
void collect(Messages& children, Value& value)
{
    if constexpr (isMessage<Value>) children.push_back(&value);
}

template <class Value>
void collect(Messages& children, Value*& pointer)
{
    if (pointer) collect(children, *pointer);
}

template <class Value>
void collect(Messages& children, std::vector<Value>& values)
{
    for (Value& value : values)
        collect(children, value);
}

template <class Value>
constexpr bool isOwner = std::is_pointer_v<Value>;
template <class Item>
constexpr bool isOwner<std::vector<Item*>> = true;

/// Gives the field of `get`, a function that shows it, another value by `set`.
template <class Message, class Value>
void setAnother(Serializable& message, void (Message::*set)(Value), std::decay_t<Value> value)
{
    change(value);
    (static_cast<Message&>(message).*set)(value);
}

template <class Message, class Get>
std::string shownBy(Serializable& message, Get get)
{
    auto&& value = (static_cast<Message&>(message).*get)();
    return shown(value);
}

}  // namespace

#define FIELD(...)
#define SETTER(...)
#define GETTER(...)
#define WRITER(...)
#define ENUMERATOR(...)
#define WORDS(...)

std::vector<Field> fields()
{
    return {
#undef FIELD
#define FIELD(Class, field, text)                                                           \
    {#Class,                                                                                \
     #field,                                                                                \
     text,                                                                                  \
     isOwner<decltype(Orvu::Class::field)>,                                                 \
     [](Serializable& message) { return shown(static_cast<Orvu::Class&>(message).field); }, \
     [](Serializable& message) { change(static_cast<Orvu::Class&>(message).field); },       \
     [](Messages& children, Serializable& message) { collect(children, static_cast<Orvu::Class&>(message).field); }},
#include "fields.inc"
#undef FIELD
#define FIELD(...)
    };
}

std::vector<Field> fieldsOf(const std::string& owner)
{
    std::vector<Field> own;
    for (const Field& field : fields())
        if (field.owner == owner) own.push_back(field);
    return own;
}

std::vector<Function> writers()
{
    return {
#undef WRITER
#define WRITER(Class, text) {#Class, "serialize", text},
#include "fields.inc"
#undef WRITER
#define WRITER(...)
    };
}

std::vector<Function> accessors()
{
    return {
#undef SETTER
#undef GETTER
#define SETTER(Class, field, function)                                                          \
    {#Class, #function, #field, [](Serializable& message) {                                     \
         setAnother(message, &Orvu::Class::function, static_cast<Orvu::Class&>(message).field); \
     }},
#define GETTER(Class, field, function)   \
    {#Class, #function, #field, nullptr, \
     [](Serializable& message) { return shownBy<Orvu::Class>(message, &Orvu::Class::function); }},
#include "fields.inc"
    };
}

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

void PrintTo(const Field& field, std::ostream* out)
{
    *out << field.owner << "::" << field.name << ", described as \"" << field.description << '"';
}

void PrintTo(const Function& function, std::ostream* out)
{
    *out << function.owner << "::" << function.name;
}

}  // namespace OrvuTests
