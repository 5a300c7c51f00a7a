#include <gtest/gtest.h>

#include "orvu/GingaEditCommand.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string withoutHeader(GingaEditCommand& command)
{
    command.serializeHeader(false);
    return textOf(command);
}

TEST(AGingaEditCommand, WritesAWordBeyondItsVocabularyAsAnEmptyText)
{
    GingaEditCommand command;
    command.command = static_cast<EditCommand>(38);
    EXPECT_EQ(withoutHeader(command), "{\n\t\"command\":\t\"\"\n}");
}

TEST(AGingaEditCommand, WritesTheAttributesOfAnElementWithoutAnId)
{
    GingaEditCommand command;
    command.fontFamily = "Tiresias";
    EXPECT_EQ(withoutHeader(command), "{\n\t\"elementId\":\t{\n\t\t\"fontFamily\":\t\"Tiresias\"\n\t}\n}");
    command.alias = "a";
    command.documentURI = "u";
    command.fontStyle = "s";
    command.fontWeight = "w";
    EXPECT_EQ(withoutHeader(command),
              "{\n\t\"elementId\":\t{\n\t\t\"alias\":\t\"a\",\n\t\t\"documentURI\":\t\"u\",\n"
              "\t\t\"fontFamily\":\t\"Tiresias\",\n\t\t\"fontStyle\":\t\"s\",\n\t\t\"fontWeight\":\t\"w\"\n\t}\n}");
}

TEST(AGingaEditCommand, WritesAnElementForAnyOneOfItsAttributes)
{
    const auto textWith = [](std::string GingaEditCommand::*attribute) {
        GingaEditCommand command;
        command.*attribute = "x";
        return withoutHeader(command);
    };
    EXPECT_EQ(textWith(&GingaEditCommand::alias), "{\n\t\"elementId\":\t{\n\t\t\"alias\":\t\"x\"\n\t}\n}");
    EXPECT_EQ(textWith(&GingaEditCommand::documentURI), "{\n\t\"elementId\":\t{\n\t\t\"documentURI\":\t\"x\"\n\t}\n}");
    EXPECT_EQ(textWith(&GingaEditCommand::fontFamily), "{\n\t\"elementId\":\t{\n\t\t\"fontFamily\":\t\"x\"\n\t}\n}");
    EXPECT_EQ(textWith(&GingaEditCommand::fontStyle), "{\n\t\"elementId\":\t{\n\t\t\"fontStyle\":\t\"x\"\n\t}\n}");
    EXPECT_EQ(textWith(&GingaEditCommand::fontWeight), "{\n\t\"elementId\":\t{\n\t\t\"fontWeight\":\t\"x\"\n\t}\n}");
}

TEST(AGingaEditCommand, DropsTheAttributesOfAnElementWithAnId)
{
    GingaEditCommand command;
    command.elementId = "e";
    command.fontFamily = "Tiresias";
    EXPECT_EQ(withoutHeader(command), "{\n\t\"elementId\":\t\"e\"\n}");
}

TEST(AGingaEditCommand, ReadsTheAttributesOfAnElement)
{
    GingaEditCommand command;
    command.elementId = "kept";
    command.fontStyle = "kept";
    EXPECT_TRUE(command.deserialize(R"({"ELEMENTID": {"alias": "a", "documentURI": "u", "fontFamily": "f",
                                        "fontStyle": 5, "FONTWEIGHT": "w", "fontWeight": "x"}, "xml": "<a/>"})"));
    EXPECT_EQ(command.elementId, "kept");
    EXPECT_EQ(command.alias, "a");
    EXPECT_EQ(command.documentURI, "u");
    EXPECT_EQ(command.fontFamily, "f");
    EXPECT_EQ(command.fontStyle, "kept");
    EXPECT_EQ(command.fontWeight, "w");
    EXPECT_EQ(command.xml, "<a/>");
}

TEST(AGingaEditCommand, ReadsNoAttributesBesideAnId)
{
    GingaEditCommand command;
    EXPECT_TRUE(command.deserialize(R"({"elementId": "e", "elementId": {"alias": "a"}})"));
    EXPECT_EQ(command.elementId, "e");
    EXPECT_EQ(command.alias, "");
    for (const char* value : {"null", "5", "true", "[]", R"(["alias"])"}) {
        EXPECT_TRUE(command.deserialize((std::string(R"({"elementId": )") + value + "}").c_str())) << value;
        EXPECT_EQ(command.elementId, "e") << value;
        EXPECT_EQ(command.alias, "") << value;
    }
}

TEST(AGingaEditCommand, KnowsItsWordsByTheirExactSpelling)
{
    GingaEditCommand command;
    EXPECT_TRUE(command.deserialize(R"({"command": "removeFont"})"));
    EXPECT_EQ(command.command, 23);
    EXPECT_TRUE(command.deserialize(R"({"command": "RemoveFont"})"));
    EXPECT_EQ(command.command, 0);
}

}  // namespace
}  // namespace OrvuTests
