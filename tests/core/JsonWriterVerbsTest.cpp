#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/TestMessages.h"
#include "messages/core/Forms.h"
#include "messages/core/JsonWriter.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string compact(Scripted::Writes writes)
{
    return written(PrintStyle::Compact, std::move(writes));
}

std::string formatted(Scripted::Writes writes)
{
    return written(PrintStyle::Formatted, std::move(writes));
}

/// A child without which its holder has no text.
template <class Message>
struct OrGiveUp {
    Message* child;

    bool write(JsonWriter& json) const
    {
        const bool isWritten = child && json.value(*child);
        if (child && !isWritten) json.giveUp();
        return isWritten;
    }
};
template <class Message>
OrGiveUp(Message*) -> OrGiveUp<Message>;

constexpr const char* kTimeWithHeader = R"({"HEADER":"serviceTime","time":""})";

TEST(TheWritersVerbs, WriteNull)
{
    EXPECT_EQ(compact([](JsonWriter& json) { json.put("a", asNullWhenEmpty("")); }), R"({"a":null})");
}

TEST(TheWritersVerbs, WriteListsOfTextsAndNumbers)
{
    const auto writes = [](JsonWriter& json) {
        json.list("texts", std::vector<std::string>{"a", "", std::string("b\0c", 3)});
        json.list("numbers", std::vector<int>{-1, 0, 2147483647});
        json.list("shorts", std::vector<unsigned short>{0, 65535});
        json.list("none", std::vector<int>{});
    };
    EXPECT_EQ(compact(writes), R"({"texts":["a","","b"],"numbers":[-1,0,2147483647],"shorts":[0,65535],"none":[]})");
    EXPECT_EQ(
        formatted(writes),
        "{\n\t\"texts\":\t[\"a\", \"\", \"b\"],\n\t\"numbers\":\t[-1, 0, 2147483647],\n\t\"shorts\":\t[0, 65535],\n"
        "\t\"none\":\t[]\n}");
}

TEST(TheWritersVerbs, WriteObjectsInObjects)
{
    const auto writes = [](JsonWriter& json) {
        json.object("outer", [&] {
            json.put("a", 1);
            json.object("inner", [] {});
            json.put("b", 2);
        });
        json.put("c", 3);
    };
    EXPECT_EQ(compact(writes), R"({"outer":{"a":1,"inner":{},"b":2},"c":3})");
    EXPECT_EQ(formatted(writes),
              "{\n\t\"outer\":\t{\n\t\t\"a\":\t1,\n\t\t\"inner\":\t{\n\t\t},\n\t\t\"b\":\t2\n\t},\n\t\"c\":\t3\n}");
}

TEST(TheWritersVerbs, LeaveAChildsHeaderFlagAlone)
{
    ServiceTime time;
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", asIs(&time)); }),
              R"({"a":)" + std::string(kTimeWithHeader) + "}");
    EXPECT_EQ(compact([&](JsonWriter& json) {
                  const std::vector<ServiceTime*> times = {&time, nullptr, &time};
                  json.put("a", asIs(times));
              }),
              R"({"a":[)" + std::string(kTimeWithHeader) + "," + kTimeWithHeader + "]}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", orNull(asIs(&time))); }),
              R"({"a":)" + std::string(kTimeWithHeader) + "}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", OrGiveUp{&time}); }),
              R"({"a":)" + std::string(kTimeWithHeader) + "}");
}

TEST(TheWritersVerbs, SwitchAChildsHeaderFlagOff)
{
    ServiceTime time;
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", &time); }), R"({"a":{"time":""}})");
    ServiceTime other;
    EXPECT_EQ(compact([&](JsonWriter& json) { json.list("a", std::vector<ServiceTime*>{&other}); }),
              R"({"a":[{"time":""}]})");
}

TEST(TheWritersVerbs, TellNoChildFromAChildWithoutAText)
{
    Silent<ServiceTime> silent;
    ServiceTime* const none = nullptr;
    ServiceTime* const child = &silent;
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", asIs(none)); }), "{}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", asIs(child)); }), "{}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", orNull(asIs(none))); }), R"({"a":null})");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", orNull(asIs(child))); }), "{}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", OrGiveUp{none}); }), "{}");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("a", OrGiveUp{child}); }), "(null)");
}

TEST(GivingUp, LeavesAMessageWithoutATextWhateverItWritesAfterwards)
{
    Silent<ServiceTime> silent;
    ServiceTime* const child = &silent;
    ServiceTime other;
    EXPECT_EQ(compact([&](JsonWriter& json) {
                  json.put("before", 1);
                  json.put("child", OrGiveUp{child});
                  json.put("behind", 2);
                  json.put("other", &other);
                  json.list("others", std::vector<ServiceTime*>{&other, &other});
              }),
              "(null)");
}

TEST(GivingUp, LeavesOutTheChildThatDoes)
{
    Silent<ServiceTime> silent;
    ServiceTime* const without = &silent;
    ServiceTime with;
    Scripted child([&](JsonWriter& json) {
        json.put("a", OrGiveUp{without});
        json.put("b", &with);
    });
    EXPECT_EQ(compact([&](JsonWriter& json) {
                  json.put("before", 1);
                  json.put("child", &child);
                  json.list("children", std::vector<Scripted*>{&child, &child});
                  json.put("behind", 2);
              }),
              R"({"before":1,"children":[],"behind":2})");
}

TEST(GivingUp, GoesUpToWhereAChildMayBeLeftOut)
{
    Silent<ServiceTime> silent;
    ServiceTime* const without = &silent;
    Scripted inner([&](JsonWriter& json) { json.put("a", OrGiveUp{without}); });
    Scripted outer([&](JsonWriter& json) { json.put("inner", OrGiveUp{&inner}); });
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("outer", OrGiveUp{&outer}); }), "(null)");
    EXPECT_EQ(compact([&](JsonWriter& json) { json.put("outer", &outer); }), "{}");
}

enum Colour : int { Red, Green };
constexpr Word kColourWords[] = {{Red, "red"}, {Green, "green", WrittenOnly}};
constexpr Vocabulary<Colour> kColours = vocabulary(kColourWords, Red);

TEST(TheForms, WriteFieldsInAnotherForm)
{
    Colour colour = Green;
    Colour beyond = static_cast<Colour>(7);
    std::vector<Colour> colours = {Red, static_cast<Colour>(-1), Green};
    int number = 5;
    int* held = &number;
    int* none = nullptr;
    EXPECT_EQ(compact([&](JsonWriter& json) {
                  json.put("colour", asWord(colour, kColours));
                  json.put("beyond", asWord(beyond, kColours));
                  json.put("colours", asWords(colours, kColours));
                  json.put("empty", asNullWhenEmpty(""));
                  json.put("text", asNullWhenEmpty("a"));
                  json.put("held", ifHeld(held));
                  json.put("none", ifHeld(none));
              }),
              R"({"colour":"green","beyond":"","colours":["red","","green"],"empty":null,"text":"a","held":5})");
}

}  // namespace
}  // namespace OrvuTests
