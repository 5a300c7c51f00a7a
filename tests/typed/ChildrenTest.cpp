#include <gtest/gtest.h>
#include <string>

#include "orvu/Typed.h"

using namespace Orvu;

namespace {

TEST(AList, GetsAChildThatItOwns)
{
    ServiceList list;
    Service& service = append(list.services);
    service.serviceName = "Canal Um";
    ASSERT_EQ(list.services.size(), 1U);
    EXPECT_EQ(list.services[0], &service);
}

TEST(AList, GetsAChildMadeOfArguments)
{
    GingaFileList list;
    EXPECT_EQ(append(list.files, "a.txt", 7).size, 7);
    EXPECT_EQ(append(list.dirs, "b").name, "b");
}

TEST(AField, GetsAChildAndDeletesTheOneBefore)
{
    static int alive = 0;
    struct Counted : LinkageDescriptor {
        Counted() { ++alive; }
        ~Counted() override { --alive; }
    };
    Counted* field = nullptr;
    EXPECT_EQ(&make(field), field);
    make(field);
    EXPECT_EQ(alive, 1);
    delete field;
    EventInfo event;
    make(event.linkage).tsId = 1;
    make(event.linkage).tsId = 2;
    EXPECT_EQ(event.linkage->tsId, 2);
}

TEST(AField, GetsAPlainValueToo)
{
    MediaPlayerAction action;
    make(action.vol, 50);
    make(action.playerid, "main");
    EXPECT_EQ(*action.vol, 50);
    EXPECT_EQ(*action.playerid, "main");
}

TEST(ATable, GetsItsBytes)
{
    BinaryData table(DataTypeBinaryNIT);
    EXPECT_TRUE(setBytes(table, "before"));
    EXPECT_TRUE(setBytes(table, {"a\0b", 3}));
    EXPECT_EQ(std::string(reinterpret_cast<char*>(table.buffer), table.bufferSize), std::string("a\0b", 3));
    EXPECT_TRUE(setBytes(table, ""));
    EXPECT_EQ(table.bufferSize, 0U);
    EXPECT_NE(table.buffer, nullptr);
}

}  // namespace
