#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "orvu/ClientApplications.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Texts = std::vector<std::string>;

TEST(AClientApplication, IsBornWhenItIsMade)
{
    const std::time_t before = std::time(nullptr);
    ClientApplication app;
    const std::time_t after = std::time(nullptr);
    EXPECT_GE(app.bornTime, static_cast<int>(before));
    EXPECT_LE(app.bornTime, static_cast<int>(after));
    app.bornTime = 5;
    EXPECT_TRUE(app.deserialize("{}"));
    EXPECT_EQ(app.bornTime, 5);
}

TEST(AClientApplicationList, WritesIdsForDeletionOnlyWhenThereAreSome)
{
    ClientApplicationList list;
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"clientApplicationList\",\n\t\"clientApplicationList\":\t[]\n}");
    list.addAppIdToDeletion("a");
    list.addAppIdToDeletion("");
    list.addAppIdToDeletion("a");
    list.addAppIdToDeletion(nullptr);
    EXPECT_EQ(list.deletionIds, (Texts{"a", "", "a"}));
    EXPECT_EQ(textOf(list),
              "{\n\t\"HEADER\":\t\"clientApplicationList\",\n\t\"clientApplicationList\":\t[],\n"
              "\t\"deletionItens\":\t[\"a\", \"\", \"a\"]\n}");
}

TEST(AClientApplicationList, AppendsTheIdsThatItReads)
{
    ClientApplicationList list;
    EXPECT_TRUE(list.deserialize(R"({"clientApplicationList": [], "deletionItens": ["a", 5, null, "b"]})"));
    EXPECT_TRUE(list.deserialize(R"({"clientApplicationList": [], "DELETIONITENS": ["c"], "deletionItems": ["d"]})"));
    EXPECT_EQ(list.deletionIds, (Texts{"a", "b", "c"}));
    EXPECT_FALSE(list.deserialize(R"({"deletionItens": ["e"]})"));
    EXPECT_EQ(list.deletionIds.size(), 3u);
}

TEST(BindTokens, TakeEachTokenOnce)
{
    ServiceBindTokens tokens;
    tokens.addToken("");
    tokens.addToken("a");
    tokens.addToken("a");
    tokens.addToken("A");
    EXPECT_EQ(tokens.bindTokens, (Texts{"a", "A"}));
    EXPECT_TRUE(tokens.deserialize(R"({"bindTokens": ["b", "b", "", "a", 5, null, "c"]})"));
    EXPECT_EQ(tokens.bindTokens, (Texts{"a", "A", "b", "c"}));
}

/// Comparing each with all others would take minutes for so many.
constexpr int kMany = 300000;

/// A text with `count` tokens, as `token` gives them.
template <class Token>
std::string textOfTokens(int count, Token token)
{
    std::string text = R"({"bindTokens": [)";
    for (int i = 0; i < count; ++i)
        text += (i == 0 ? "\"" : ",\"") + token(i) + '"';
    return text + "]}";
}

TEST(BindTokens, MayBeManyOfWhichEachIsHeldOnceInTheirOrder)
{
    const auto token = [](int i) { return std::to_string(i * 7919LL % kMany); };  // each once, in no order
    ServiceBindTokens tokens;
    tokens.bindTokens = {"a", "5", "a"};  // the application's own stay as they are
    ASSERT_TRUE(tokens.deserialize(textOfTokens(kMany, token).c_str()));
    Texts expected = {"a", "5", "a"};
    for (int i = 0; i < kMany; ++i) {
        if (token(i) != "5") expected.push_back(token(i));
    }
    EXPECT_TRUE(tokens.bindTokens == expected);  // without printing them
    ASSERT_TRUE(tokens.deserialize(textOfTokens(kMany, token).c_str()));
    EXPECT_TRUE(tokens.bindTokens == expected);
}

TEST(BindTokens, MayComeManyTimes)
{
    ServiceBindTokens tokens;
    ASSERT_TRUE(tokens.deserialize(textOfTokens(kMany, [](int) { return std::string("t"); }).c_str()));
    EXPECT_EQ(tokens.bindTokens, (Texts{"t"}));
    const auto everyThird = [](int i) { return std::to_string(i % 100 * 1000 / 3 * 3); };
    ASSERT_TRUE(tokens.deserialize(textOfTokens(kMany, everyThird).c_str()));
    Texts expected = {"t"};
    for (int i = 0; i < 100; ++i)
        expected.push_back(everyThird(i));
    EXPECT_EQ(tokens.bindTokens, expected);
}

TEST(BindTokens, ThatAnApplicationPutThereStayHoweverManyTheyAre)
{
    Texts own;
    for (int i = 0; i < 40; ++i) {
        own.push_back("own" + std::to_string(i % 20));
        own.emplace_back();
    }
    ServiceBindTokens tokens;
    tokens.bindTokens = own;
    ASSERT_TRUE(tokens.deserialize(R"({"bindTokens": ["b", "own3", "", "a", 5, "b", null, "own19", "c", "a"]})"));
    own.insert(own.end(), {"b", "a", "c"});
    EXPECT_EQ(tokens.bindTokens, own);
    ASSERT_TRUE(tokens.deserialize(R"({"bindTokens": []})"));
    ASSERT_TRUE(tokens.deserialize(R"({"bindTokens": ["", 5, "a"]})"));
    EXPECT_EQ(tokens.bindTokens, own);
}

TEST(BindTokens, AreTheSameWhetherTheyAreReadAtOnceOrAddedOneByOne)
{
    for (int count = 0; count <= 80; ++count) {
        const auto token = [](int i) { return i % 11 == 0 ? std::string() : std::to_string(i * i % 37); };
        ServiceBindTokens read;
        ServiceBindTokens added;
        ASSERT_TRUE(read.deserialize(textOfTokens(count, token).c_str()));
        for (int i = 0; i < count; ++i)
            added.addToken(token(i));
        ASSERT_EQ(read.bindTokens, added.bindTokens) << count;
    }
}

TEST(BindTokens, AreTheSameAroundTheNumberThatIsComparedOneByOne)
{
    for (int held = 28; held <= 36; ++held) {
        const auto token = [&](int i) { return std::to_string(i % 2 == 0 ? i : held + i); };
        ServiceBindTokens read;
        for (int i = 0; i < held; ++i)
            read.addToken(std::to_string(i));
        ServiceBindTokens added(read);
        ASSERT_TRUE(read.deserialize(textOfTokens(30, token).c_str()));
        for (int i = 0; i < 30; ++i)
            added.addToken(token(i));
        ASSERT_EQ(read.bindTokens, added.bindTokens) << held;
    }
}

TEST(BindTokens, CarryTheWholeServiceOrItsLocator)
{
    ServiceBindTokens tokens;
    EXPECT_EQ(tokens.getDataType(), 82u);
    EXPECT_TRUE(tokens.fullService);
    tokens.serializeHeader(false);
    tokens.service->serviceContextId = "1.2.01";
    EXPECT_EQ(textOf(tokens),
              "{\n\t\"HEADER\":\t\"serviceBindTokens\",\n\t\"service\":\t{\n\t\t\"serviceContextId\":\t\"1.2.01\",\n"
              "\t\t\"serviceName\":\t\"\",\n\t\t\"transportStreamId\":\t0,\n\t\t\"originalNetworkId\":\t0,\n"
              "\t\t\"serviceId\":\t0\n\t},\n\t\"bindTokens\":\t[]\n}");
    EXPECT_EQ(textOf(*tokens.service).find("HEADER"), std::string::npos);
    tokens.setFullService(false);
    EXPECT_FALSE(tokens.isFullService());
    tokens.addToken("a");
    const std::string text =
        "{\n\t\"HEADER\":\t\"serviceBindTokens\",\n\t\"serviceContextId\":\t\"1.2.01\",\n\t\"bindTokens\":\t[\"a\"]\n}";
    EXPECT_EQ(textOf(tokens), text);

    ServiceBindTokens read;
    EXPECT_TRUE(read.deserialize(text.c_str()));
    EXPECT_EQ(read.service->serviceContextId, "1.2.01");
    EXPECT_TRUE(read.fullService);  // not changed by reading
}

TEST(BindTokens, TakeTheServiceBeforeALocator)
{
    ServiceBindTokens tokens;
    EXPECT_TRUE(tokens.deserialize(R"({"serviceContextId": "other", "service": {"serviceName": "A"}})"));
    EXPECT_EQ(tokens.service->serviceName, "A");
    EXPECT_EQ(tokens.service->serviceContextId, "");
    EXPECT_TRUE(tokens.deserialize(R"({"serviceContextId": "other", "service": null})"));
    EXPECT_EQ(tokens.service->serviceContextId, "");
    EXPECT_TRUE(tokens.deserialize(R"({"serviceContextId": 5})"));
    EXPECT_EQ(tokens.service->serviceContextId, "");
    EXPECT_TRUE(tokens.deserialize(R"({"ServiceContextId": "1.2.01"})"));
    EXPECT_EQ(tokens.service->serviceContextId, "1.2.01");
}

TEST(BindTokens, LeaveOutAServiceWithoutAJsonText)
{
    ServiceBindTokens tokens;
    delete tokens.service;
    tokens.service = new Silent<Service>;
    EXPECT_EQ(textOf(tokens), "{\n\t\"HEADER\":\t\"serviceBindTokens\",\n\t\"bindTokens\":\t[]\n}");
    delete tokens.service;
    tokens.service = nullptr;
    for (const bool full : {true, false}) {
        tokens.fullService = full;
        EXPECT_EQ(textOf(tokens), "{\n\t\"HEADER\":\t\"serviceBindTokens\",\n\t\"bindTokens\":\t[]\n}");
    }
}

TEST(BindTokens, MakeTheServiceAnewThatAnApplicationTookAway)
{
    for (const char* text : {R"({"service": {"serviceContextId": "1.2.01"}})", R"({"serviceContextId": "1.2.01"})"}) {
        ServiceBindTokens tokens;
        delete tokens.service;
        tokens.service = nullptr;
        EXPECT_TRUE(tokens.deserialize("{}"));
        EXPECT_EQ(tokens.service, nullptr);
        EXPECT_TRUE(tokens.deserialize(text));
        ASSERT_NE(tokens.service, nullptr);
        EXPECT_EQ(tokens.service->serviceContextId, "1.2.01");
    }
}

TEST(BindTokens, AreCopiedWithAServiceOfTheirOwn)
{
    ServiceBindTokens tokens;
    tokens.service->serviceContextId = "1.2.01";
    tokens.fullService = false;
    tokens.addToken("b");
    tokens.addToken("a");
    tokens.service->serializeHeader(false);
    ServiceBindTokens copy(tokens);
    const std::unique_ptr<ServiceBindTokens> clone(tokens.clone());
    for (ServiceBindTokens* const other : {&copy, clone.get()}) {
        EXPECT_NE(other->service, tokens.service);
        EXPECT_EQ(textOf(*other->service), textOf(*tokens.service));  // a clone, without "HEADER" like the first
        EXPECT_FALSE(other->fullService);
        EXPECT_EQ(other->bindTokens, (Texts{"b", "a"}));
    }
    delete tokens.service;
    tokens.service = nullptr;
    const std::unique_ptr<ServiceBindTokens> without(tokens.clone());
    EXPECT_EQ(without->service, nullptr);
    EXPECT_FALSE(std::is_copy_assignable_v<ServiceBindTokens>);
}

TEST(ABindTokensList, KeepsTheHeadersThatItsElementsAlwaysWrite)
{
    ServiceBindTokensList list;
    list.serializeHeader(false);
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"serviceBindTokensList\",\n\t\"boundServices\":\t[]\n}");
    auto* const tokens = new ServiceBindTokens;
    tokens->fullService = false;
    list.addService(tokens);
    EXPECT_EQ(
        textOf(list),
        "{\n\t\"HEADER\":\t\"serviceBindTokensList\",\n\t\"boundServices\":\t[{\n"
        "\t\t\t\"HEADER\":\t\"serviceBindTokens\",\n\t\t\t\"serviceContextId\":\t\"\",\n\t\t\t\"bindTokens\":\t[]\n"
        "\t\t}]\n}");
}

TEST(ABindTokensList, NeedsNoServicesUnlikeABoundTokenList)
{
    ServiceBindTokensList bind;
    EXPECT_TRUE(bind.deserialize("{}"));
    EXPECT_TRUE(bind.services.empty());
    EXPECT_EQ(bind.reservedText, "");
    EXPECT_TRUE(bind.reservedFlag);
    ServiceBoundTokenList bound;
    EXPECT_FALSE(bound.deserialize(R"({"token": "a"})"));
    EXPECT_EQ(bound.token, "a");
}

}  // namespace
}  // namespace OrvuTests
