#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "orvu/Ncl.h"
#include "orvu/PairingScreens.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// A message that reads a number and a list, and then throws.
template <class Thrown>
struct ThrowingReader {
    std::vector<Service*> list;
    int number = 0;
    Scripted message{[this](JsonReader& json) {
        json.optional("number", number);
        json.optional("list", list);
        throw Thrown();
    }};

    bool read() { return message.deserialize(R"({"number": 5, "list": [{}, {}]})"); }

    ~ThrowingReader()
    {
        for (const Service* service : list)
            delete service;
    }
};

struct InvalidNumber : std::invalid_argument {
    InvalidNumber() : invalid_argument("stoi") {}
};

struct HugeNumber : std::out_of_range {
    HugeNumber() : out_of_range("stoi") {}
};

struct Failure : std::runtime_error {
    Failure() : runtime_error("failure") {}
};

TEST(ReadingAMessage, LetsTheExceptionsOfNumberTextsPass)
{
    EXPECT_THROW(ThrowingReader<InvalidNumber>().read(), std::invalid_argument);
    EXPECT_THROW(ThrowingReader<HugeNumber>().read(), std::out_of_range);
}

TEST(ReadingAMessage, FailsOnAnyOtherException)
{
    EXPECT_FALSE(ThrowingReader<Failure>().read());
    EXPECT_FALSE(ThrowingReader<std::bad_alloc>().read());
    EXPECT_FALSE(ThrowingReader<std::logic_error*>().read());
    EXPECT_FALSE(ThrowingReader<int>().read());
}

TEST(ReadingAMessage, KeepsWhatItReadBeforeTheException)
{
    ThrowingReader<Failure> failing;
    EXPECT_FALSE(failing.read());
    EXPECT_EQ(failing.number, 5);
    EXPECT_EQ(failing.list.size(), 2u);
    ThrowingReader<InvalidNumber> throwing;
    EXPECT_THROW(throwing.read(), std::invalid_argument);
    EXPECT_EQ(throwing.number, 5);
    EXPECT_EQ(throwing.list.size(), 2u);
}

TEST(ReadingAMessage, LetsTheExceptionsOfNumberTextsPassOutOfAParsedItem)
{
    const Tree item = treeOf("{}");
    EXPECT_THROW(ThrowingReader<InvalidNumber>().message.deserializeObject(item.get()), std::invalid_argument);
    EXPECT_FALSE(ThrowingReader<Failure>().message.deserializeObject(item.get()));
}

/// A message whose elements throw `Thrown` when their number is 0.
template <class Thrown>
class Element : public Serializable {
public:
    Element() : Serializable(DataTypeKeyset) {}
    char* serialize() override { return nullptr; }
    bool deserialize(const char*) override { return false; }
    using Serializable::deserialize;
    std::string text = "to be released";
};

template <class Thrown>
void throwAtZero(JsonReader& json)
{
    int number = 1;
    json.optional("number", number);
    if (number == 0) throw Thrown();
}

#define ELEMENT_OF(Thrown)                                        \
    [[maybe_unused]] void write(JsonWriter&, Element<Thrown>&) {} \
    void read(JsonReader& json, Element<Thrown>&)                 \
    {                                                             \
        throwAtZero<Thrown>(json);                                \
    }
ELEMENT_OF(InvalidNumber)
ELEMENT_OF(HugeNumber)
ELEMENT_OF(Failure)
ELEMENT_OF(std::bad_alloc)

}  // namespace
}  // namespace OrvuTests

namespace Orvu {

CONTRACT(OrvuTests::Element<OrvuTests::InvalidNumber>, Compact)
CONTRACT(OrvuTests::Element<OrvuTests::HugeNumber>, Compact)
CONTRACT(OrvuTests::Element<OrvuTests::Failure>, Compact)
CONTRACT(OrvuTests::Element<std::bad_alloc>, Compact)

}  // namespace Orvu

namespace OrvuTests {
namespace {

template <class Thrown>
bool readElements(const char* text)
{
    std::vector<Element<Thrown>*> list;
    Scripted message([&](JsonReader& json) { json.optional("list", list); });
    try {
        const bool success = message.deserialize(text);
        for (const Element<Thrown>* element : list)
            delete element;
        return success;
    } catch (...) {
        for (const Element<Thrown>* element : list)
            delete element;
        throw;
    }
}

TEST(ReadingAList, LetsTheExceptionsOfItsElementsPass)
{
    EXPECT_TRUE(readElements<InvalidNumber>(R"({"list": [{"number": 1}, {}]})"));
    EXPECT_THROW(readElements<InvalidNumber>(R"({"list": [{}, {"number": 0}, {}]})"), std::invalid_argument);
    EXPECT_THROW(readElements<HugeNumber>(R"({"list": [{}, {"number": 0}, {}]})"), std::out_of_range);
}

TEST(ReadingAList, FailsOnAnyOtherExceptionOfAnElement)
{
    EXPECT_FALSE(readElements<Failure>(R"({"list": [{}, {"number": 0}, {}]})"));
    EXPECT_FALSE(readElements<std::bad_alloc>(R"({"list": [{}, {"number": 0}, {}]})"));
}

/// A held child of an application's class that throws when it is read.
template <class Thrown>
class ThrowingChild : public Service {
public:
    bool deserialize(const char*) override { throw Thrown(); }
    using Service::deserialize;
};

TEST(ReadingAHeldChild, FailsOrLetsPassAsItsHolderDoes)
{
    const char* const text = R"({"child": {}})";
    EXPECT_THROW(Holder(new ThrowingChild<InvalidNumber>).deserialize(text), std::invalid_argument);
    EXPECT_THROW(Holder(new ThrowingChild<HugeNumber>).deserialize(text), std::out_of_range);
    EXPECT_FALSE(Holder(new ThrowingChild<Failure>).deserialize(text));
    EXPECT_FALSE(Holder(new ThrowingChild<std::bad_alloc>).deserialize(text));
}

TEST(WritingAMessage, GivesNothingWhenItsContractThrows)
{
    Scripted message([](JsonWriter& json) {
        json.put("before", std::string(1000, 'a'));
        throw Failure();
    });
    EXPECT_EQ(textOf(message), "(null)");
}

/// Throws when it is to be written.
template <class Message, class Thrown>
class ThrowingWriter : public Message {
public:
    char* serialize() override { throw Thrown(); }
};

TEST(WritingAContainer, GivesNothingWhenAChildThrows)
{
    ServiceList list;
    list.addService(new Service);
    list.addService(new ThrowingWriter<Service, Failure>);
    EXPECT_EQ(textOf(list), "(null)");

    ScreenDescription description;
    description.addItem(new ScreenItem);
    description.items[0]->addItem(new ThrowingWriter<ScreenItem, InvalidNumber>);
    EXPECT_EQ(textOf(description), "(null)");

    Holder holder(new ThrowingWriter<Service, int>);
    EXPECT_EQ(textOf(holder), "(null)");
}

TEST(WritingAnAnswer, GivesNothingWhenAChildThrows)
{
    NCLNodeList list;
    list.addNode(new NCLNode);
    EXPECT_NE(taken(list.serializeResponse()), "(null)");
    list.addNode(new ThrowingWriter<NCLNode, Failure>);
    EXPECT_EQ(taken(list.serializeResponse()), "(null)");
}

TEST(WritingAContainer, SkipsAChildThatHoldsOneThatThrows)
{
    ScreenDescription description;
    description.addItem(new Inheriting<ScreenItem>);  // writes itself: its own text is null
    description.items[0]->addItem(new ThrowingWriter<ScreenItem, Failure>);
    EXPECT_EQ(textOf(description), "{\n\t\"HEADER\":\t\"screenDescription\",\n\t\"screen_items\":\t[]\n}");
}

}  // namespace
}  // namespace OrvuTests
