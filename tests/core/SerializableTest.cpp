#include <gmock/gmock.h>
#include <string>

#include "core/TestMessages.h"
#include "orvu/Serializable.h"
#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// Keeps the text that it was given and answers as it was told.
class Recorder : public Serializable {
public:
    Recorder() : Serializable(DataTypeKeyset) {}

    char* serialize() override { return textOfAnApplication("{}"); }
    bool deserialize(const char* text) override
    {
        given = text;
        return answer;
    }
    bool deserialize(const char* text, unsigned char& error) override
    {
        givenWithError = text;
        if (!answer) error = 9;
        return answer;
    }

    bool answer = true;
    std::string given;
    std::string givenWithError;
};

/// Writes "HEADER" while the flag is set.
class Flagged : public Serializable {
public:
    explicit Flagged(DataType type) : Serializable(type) {}
    Flagged(const Flagged& other) = default;
    Flagged& operator=(const Flagged& other) = default;
    char* serialize() override;
    bool deserialize(const char*) override { return true; }
    using Serializable::deserialize;
};

char* Flagged::serialize()
{
    return writeText(*this,
                     {[](JsonWriter& json, Serializable& message) { json.headerIfSet(message); },
                      [](JsonReader&, Serializable&) {}, PrintStyle::Compact, sizeof(Flagged), &typeid(Flagged)});
}

TEST(ASerializable, KnowsTheTypeItWasMadeWith)
{
    EXPECT_EQ(Flagged(DataTypePos).getDataType(), DataTypePos);
    EXPECT_EQ(Flagged(static_cast<DataType>(4711)).getDataType(), 4711u);
}

TEST(ASerializable, StartsWithItsHeaderFlagSet)
{
    Flagged message(DataTypePos);
    EXPECT_EQ(textOf(message), R"({"HEADER":"pos"})");
}

TEST(ASerializable, CanSwitchItsHeaderOffAndOn)
{
    Flagged message(DataTypePos);
    message.serializeHeader(false);
    EXPECT_EQ(textOf(message), "{}");
    message.serializeHeader(true);
    EXPECT_EQ(textOf(message), R"({"HEADER":"pos"})");
}

TEST(ASerializable, HasAnEmptyHeaderForATypeOutsideTheCatalogue)
{
    Flagged message(static_cast<DataType>(allTypes().size()));
    EXPECT_EQ(textOf(message), R"({"HEADER":""})");
}

TEST(ASerializable, GivesNoReasonsUnlessItsClassDoes)
{
    Flagged message(DataTypePos);
    unsigned char error = 42;
    EXPECT_FALSE(message.Serializable::deserialize("{}", error));
    EXPECT_FALSE(message.Serializable::deserialize(nullptr, error));
    EXPECT_EQ(error, 42);
}

TEST(ASerializable, IsReadFromAParsedItem)
{
    Recorder message;
    const Tree item = treeOf(R"({"a":[1,"b"]})");
    EXPECT_TRUE(message.deserializeObject(item.get()));
    EXPECT_EQ(message.given, "{\n\t\"a\":\t[1, \"b\"]\n}");
    EXPECT_EQ(message.givenWithError, "");
}

TEST(ASerializable, IsReadFromAnItemInsideATree)
{
    Recorder message;
    const Tree tree = treeOf(R"({"a": {"b": {"c": 1}}, "d": 2})");
    EXPECT_TRUE(message.deserializeObject(cJSON_GetObjectItem(tree.get(), "a")));
    EXPECT_EQ(message.given, "{\n\t\"b\":\t{\n\t\t\"c\":\t1\n\t}\n}");
}

TEST(ASerializable, IsReadFromAnItemOfAnyKind)
{
    for (const char* text : {"5", "2.5", "\"text\"", "true", "false", "null", "[]", "[1, 2]"}) {
        Recorder message;
        EXPECT_TRUE(message.deserializeObject(treeOf(text).get()));
        EXPECT_EQ(message.given, text);
    }
}

TEST(ASerializable, FailsOnAnItemThatItsReaderRefuses)
{
    Recorder message;
    message.answer = false;
    EXPECT_FALSE(message.deserializeObject(treeOf("{}").get()));
    EXPECT_EQ(message.given, "{\n}");
}

TEST(ASerializable, FailsWithoutAnItem)
{
    Recorder message;
    message.given = "untouched";
    EXPECT_FALSE(message.deserializeObject(nullptr));
    EXPECT_EQ(message.given, "untouched");
}

TEST(ASerializable, IsReadFromAParsedItemByItsReasonGivingReader)
{
    Recorder message;
    unsigned char error = 42;
    EXPECT_TRUE(message.deserializeObject(treeOf(R"({"a":1})").get(), error));
    EXPECT_EQ(message.givenWithError, "{\n\t\"a\":\t1\n}");
    EXPECT_EQ(message.given, "");
    EXPECT_EQ(error, 42);
}

TEST(ASerializable, PassesOnTheReasonOfItsReader)
{
    Recorder message;
    message.answer = false;
    unsigned char error = 0;
    EXPECT_FALSE(message.deserializeObject(treeOf("{}").get(), error));
    EXPECT_EQ(error, 9);
}

TEST(ASerializable, GivesAMissingItemAsTheReason)
{
    Recorder message;
    unsigned char error = 0;
    EXPECT_FALSE(message.deserializeObject(nullptr, error));
    EXPECT_EQ(error, 1);
    EXPECT_EQ(message.givenWithError, "");
}

TEST(ASerializable, FailsOnAParsedItemWithoutAReasonWhenItsClassGivesNone)
{
    Service service;
    unsigned char error = 42;
    EXPECT_FALSE(service.deserializeObject(treeOf("{}").get(), error));
    EXPECT_EQ(error, 42);
}

TEST(ACopy, HasTheSameTypeAndItsHeaderFlagSet)
{
    Service service;
    service.serializeHeader(false);
    Service copy(service);
    EXPECT_EQ(copy.getDataType(), DataTypeCurrentService);
    EXPECT_EQ(Serializable::deserializeHeader(textOf(copy).c_str()), DataTypeCurrentService);
}

TEST(ACopy, MayKeepTheHeaderFlag)
{
    Flagged off(DataTypePos);
    off.serializeHeader(false);
    class Keeping : public Flagged {
    public:
        explicit Keeping(const Flagged& other) : Flagged(other) { copyHeaderFlag(other); }
    };
    Keeping copy(off);
    EXPECT_EQ(textOf(copy), "{}");
}

TEST(AnAssignment, ChangesNeitherTypeNorHeaderFlag)
{
    Flagged off(DataTypePos);
    off.serializeHeader(false);
    Flagged target(DataTypeBounds);
    target = off;
    EXPECT_EQ(textOf(target), R"({"HEADER":"bounds"})");
    off = target;
    EXPECT_EQ(textOf(off), "{}");
    EXPECT_EQ(off.getDataType(), DataTypePos);
}

}  // namespace
}  // namespace OrvuTests
