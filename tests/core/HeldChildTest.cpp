#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "core/TestMessages.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

std::string heldText(const std::string& child)
{
    return R"({"before":1,"child":)" + child + R"(,"behind":2})";
}

TEST(AHeldChild, IsWrittenWithoutAHeader)
{
    Holder holder(new Service);
    holder.child->serviceName = "A";
    EXPECT_EQ(textOf(holder), heldText(R"({"serviceContextId":"","serviceName":"A","transportStreamId":0,)"
                                       R"("originalNetworkId":0,"serviceId":0})"));
}

TEST(AHeldChild, KeepsItsHeaderFlagOff)
{
    Holder holder(new Service);
    textOf(holder);
    EXPECT_EQ(textOf(*holder.child).find("HEADER"), std::string::npos);
}

TEST(AHeldChild, KeepsItsHeaderFlagOffAlsoWhenItIsLeftOut)
{
    Holder holder(new Silent<Service>);
    EXPECT_EQ(textOf(holder), R"({"before":1,"behind":2})");
    EXPECT_EQ(taken(holder.child->Service::serialize()).find("HEADER"), std::string::npos);
}

TEST(AHeldChild, IsLeftOutWhenThereIsNone)
{
    Holder holder;
    EXPECT_EQ(textOf(holder), R"({"before":1,"behind":2})");
}

TEST(AHeldChild, OfAnApplicationsClassSpeaksForItself)
{
    EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>(R"({"HEADER": "mine", "a": [1.5]})"))),
              heldText(R"({"HEADER":"mine","a":[1.5]})"));
    EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>("5"))), heldText("5"));
    EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>("[]"))), heldText("[]"));
    EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>("null"))), heldText("null"));
    EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>("{} more"))), heldText("{}"));
}

TEST(AHeldChild, OfAnApplicationsClassIsLeftOutWithoutAJsonText)
{
    for (const char* text : {"", "{", "no JSON"})
        EXPECT_EQ(textOf(*std::make_unique<Holder>(new Saying<Service>(text))), R"({"before":1,"behind":2})") << text;
}

TEST(AHeldChild, IsMadeWhenThereIsNone)
{
    Holder holder;
    EXPECT_TRUE(holder.deserialize(R"({"child": {"serviceName": "A"}})"));
    ASSERT_NE(holder.child, nullptr);
    EXPECT_EQ(holder.child->serviceName, "A");
    EXPECT_EQ(holder.child->serviceId, 0);
}

TEST(AHeldChild, IsFilledWhenThereIsOne)
{
    Holder holder(new Service);
    Service* const before = holder.child;
    holder.child->serviceId = 5;
    EXPECT_TRUE(holder.deserialize(R"({"child": {"serviceName": "A"}})"));
    EXPECT_EQ(holder.child, before);
    EXPECT_EQ(holder.child->serviceName, "A");
    EXPECT_EQ(holder.child->serviceId, 5);
}

TEST(AHeldChild, StaysWhenItsKeyIsMissing)
{
    Holder holder;
    EXPECT_TRUE(holder.deserialize(R"({"before": 1})"));
    EXPECT_EQ(holder.child, nullptr);
}

TEST(AHeldChild, IsMadeFromAValueOfAnyKind)
{
    for (const char* value : {"null", "5", "true", R"("text")", "[]", R"([{"serviceName": "A"}])", "{}"}) {
        Holder holder;
        EXPECT_TRUE(holder.deserialize((R"({"child": )" + std::string(value) + "}").c_str())) << value;
        ASSERT_NE(holder.child, nullptr) << value;
        EXPECT_EQ(holder.child->serviceName, "") << value;
    }
}

/// Keeps the text that it is read from, and refuses it.
class Refusing : public Service {
public:
    bool deserialize(const char* text) override
    {
        given = text;
        return false;
    }
    using Service::deserialize;

    std::string given;
};

TEST(AHeldChild, OfAnApplicationsClassReadsForItself)
{
    auto* const child = new Refusing;
    Holder holder(child);
    EXPECT_TRUE(holder.deserialize(R"({"child": {"serviceName":"A","list":[1]}})"));
    EXPECT_EQ(child->given, "{\n\t\"serviceName\":\t\"A\",\n\t\"list\":\t[1]\n}");
    EXPECT_EQ(child->serviceName, "");
}

TEST(AHeldChild, MayHaveFaultsOfItsOwn)
{
    ServiceTime* time = nullptr;
    Scripted message([&](JsonReader& json) { EXPECT_TRUE(json.optional("time", time)); });
    EXPECT_TRUE(message.deserialize(R"({"time": {"tim": "12:00"}})"));
    const std::unique_ptr<ServiceTime> owned(time);
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(time->time, "");
}

}  // namespace
}  // namespace OrvuTests
