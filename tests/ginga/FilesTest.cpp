#include <gtest/gtest.h>

#include "orvu/Files.h"
#include "support/Children.h"
#include "support/Messages.h"
#include "support/WrittenTexts.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(AFile, IsMadeInThreeWays)
{
    const File empty;
    EXPECT_EQ(empty.name + empty.mimeType + empty.payload + empty.path, "");
    EXPECT_EQ(empty.size, 0);
    const File listed("a.ncl", 7);
    EXPECT_EQ(listed.name, "a.ncl");
    EXPECT_EQ(listed.size, 7);
    EXPECT_EQ(listed.payload, "");
    const File carried(std::string("text/css"), std::string("body {}"));
    EXPECT_EQ(carried.mimeType, "text/css");
    EXPECT_EQ(carried.payload, "body {}");
    EXPECT_EQ(carried.name, "");
    EXPECT_EQ(carried.size, 0);
}

TEST(ADsmccFileList, WritesWhatIsGiven)
{
    DsmccFileList list;
    EXPECT_EQ(list.componentTag, 0);
    EXPECT_EQ(list.carouselId, 0);
    list.carouselId = -1;
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"dsmccFileList\",\n\t\"files\":\t[],\n\t\"dirs\":\t[]\n}");
    list.componentTag = 1;
    list.carouselId = 2;
    list.path = "/";
    EXPECT_EQ(
        textOf(list),
        "{\n\t\"HEADER\":\t\"dsmccFileList\",\n\t\"componentTag\":\t1,\n\t\"carouselId\":\t2,\n\t\"path\":\t\"/\",\n"
        "\t\"files\":\t[],\n\t\"dirs\":\t[]\n}");
}

/// What both lists of files do.
template <class List>
class AFileList : public testing::Test {};
using FileLists = testing::Types<GingaFileList, DsmccFileList>;
TYPED_TEST_SUITE(AFileList, FileLists, );

TYPED_TEST(AFileList, NeedsFilesAndDirectories)
{
    TypeParam list;
    EXPECT_FALSE(list.deserialize(R"({"path": "/", "dirs": [{"name": "d"}]})"));
    EXPECT_EQ(list.path, "/");
    EXPECT_TRUE(list.dirs.empty());
    EXPECT_FALSE(list.deserialize(R"({"files": [{"name": "a"}]})"));
    ASSERT_EQ(list.files.size(), 1u);  // stays, though the directories are missing
    EXPECT_TRUE(list.deserialize(R"({"files": [], "dirs": [{"name": "d"}]})"));
    ASSERT_EQ(list.dirs.size(), 1u);
    EXPECT_EQ(list.dirs[0]->name, "d");
}

/// The name of a list's answer.
std::string answerOf(const Serializable& list)
{
    return Serializable::dataTypeString(list.getDataType()) + std::string("-response");
}

TYPED_TEST(AFileList, AnswersAListingWithoutContents)
{
    TypeParam list;
    list.path = "/";
    EXPECT_EQ(takenAs(answerOf(list), list.serializeResponse(false)), "{\n\t\"files\":\t[]\n}");
    list.addFile(new File("a", 1));
    list.files.push_back(nullptr);
    list.addFile(new Silent<File>);  // its response is no virtual matter
    EXPECT_EQ(takenAs(answerOf(list), list.serializeResponse(false)),
              "{\n\t\"files\":\t[{\n\t\t\t\"name\":\t\"a\",\n\t\t\t\"size\":\t1\n\t\t}, {\n\t\t\t\"name\":\t\"\",\n"
              "\t\t\t\"size\":\t0\n\t\t}]\n}");
    list.addDir(new Directory("d"));
    EXPECT_EQ(takenAs(answerOf(list), list.serializeResponse(false)),
              "{\n\t\"files\":\t[{\n\t\t\t\"name\":\t\"a\",\n\t\t\t\"size\":\t1\n\t\t}, {\n\t\t\t\"name\":\t\"\",\n"
              "\t\t\t\"size\":\t0\n\t\t}],\n\t\"dirs\":\t[{\n\t\t\t\"name\":\t\"d\"\n\t\t}]\n}");
}

TYPED_TEST(AFileList, AnswersAListingWithoutTouchingTheHeadersOfItsFiles)
{
    TypeParam list;
    list.addFile(new File("a", 1));
    list.addDir(new Directory("d"));
    taken(list.serializeResponse(false));
    EXPECT_EQ(textOf(*list.files[0]).substr(0, 11), "{\n\t\"HEADER\"");
    EXPECT_EQ(textOf(*list.dirs[0]), "{\n\t\"name\":\t\"d\"\n}");
}

TYPED_TEST(AFileList, AnswersWithThePayloadOfItsFirstFileAsItIs)
{
    TypeParam list;
    EXPECT_EQ(list.serializeResponse(true), nullptr);
    list.addFile(new File(std::string("text/plain"), std::string("say \"x\"\n")));
    list.addFile(new File(std::string("text/plain"), std::string("second")));
    EXPECT_EQ(taken(list.serializeResponse(true)), "say \"x\"\n");
}

TYPED_TEST(AFileList, HasNoPayloadInAFileThatIsNull)
{
    TypeParam list;
    list.files.push_back(nullptr);
    EXPECT_EQ(list.serializeResponse(true), nullptr);
}

}  // namespace
}  // namespace OrvuTests
