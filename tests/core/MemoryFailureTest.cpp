#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "core/TestMessages.h"
#include "messages/core/CJsonBridge.h"
#include "messages/core/Catalogue.h"
#include "orvu/Orvu.h"
#include "support/Children.h"
#include "support/FailingMemory.h"
#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

/// \file
/// Each allocation is refused in its turn. That nothing leaks then is the leak checker's to say.

namespace OrvuTests {
namespace {

const std::string kLong(3000, 'a');  // makes texts grow more than once

std::unique_ptr<ServiceList> serviceList()
{
    auto list = std::make_unique<ServiceList>();
    for (int i = 0; i < 3; ++i) {
        list->addService(new Service);
        list->services.back()->serviceName = kLong;
        list->services.back()->serviceId = i;
    }
    return list;
}

std::unique_ptr<ScreenDescription> screenDescription()
{
    auto description = std::make_unique<ScreenDescription>();
    for (int i = 0; i < 3; ++i) {
        description->addItem(new ScreenItem);
        description->items.back()->type = kLong;
        description->items.back()->addItem(new ScreenItem);
    }
    return description;
}

void expectWholeOrNothing(Serializable& message)
{
    const std::string whole = textOf(message);
    const int refusals = withMemoryRefused(
        [&] { return JsonText(message.serialize()); },
        [&](const JsonText& text, bool refused) { EXPECT_STREQ(text.get(), refused ? nullptr : whole.c_str()); });
    EXPECT_GT(refusals, 0);
}

TEST(WithoutMemory, AMessageIsWrittenWholeOrNotAtAll)
{
    Service service;
    service.serviceName = kLong;
    expectWholeOrNothing(service);
    expectWholeOrNothing(*serviceList());
    expectWholeOrNothing(*screenDescription());
    expectWholeOrNothing(*std::make_unique<Holder>(service.clone()));
}

/// Counts how often `explained` throws std::bad_alloc when one allocation after the other is refused.
template <class Explain>
int timesWithoutMemory(Explain explained)
{
    using Explained = std::optional<decltype(explained())>;
    return withMemoryRefused(
        [&]() -> Explained {
            try {
                return explained();
            } catch (const std::bad_alloc&) {
                return std::nullopt;
            }
        },
        [](const Explained& whole, bool refused) { EXPECT_EQ(whole.has_value(), !refused); });
}

TEST(WithoutMemory, ATextIsExplainedWholeOrNotAtAll)
{
    const std::string odd =
        R"({"HEADER": "targetApp", "filter": 5, "filters": [{"scheme": ")" + kLong + R"("}, {"hst": 1}]})";
    EXPECT_GT(timesWithoutMemory([&] { return explain(odd.c_str()); }), 0);
    EXPECT_GT(timesWithoutMemory([] { return explain(R"({"HEADER": "servicetime"})"); }), 0);
    EXPECT_GT(timesWithoutMemory([] { return explain(R"({"HEADER": )"); }), 0);
    std::string lists = "[[]";
    for (int i = 0; i < 100; ++i)
        lists += ",[]";
    EXPECT_GT(timesWithoutMemory([&] { return explain((lists + "]").c_str()); }), 0);
    EXPECT_GT(timesWithoutMemory([] { return keysOf(DataTypeTargetAppPerformAction); }), 0);
}

TEST(WithoutMemory, AResultIsWrittenWholeOrNotAtAll)
{
    const std::unique_ptr<Serializable> result(Serializable::factory(DataTypeSuccess));
    expectWholeOrNothing(*result);
}

// Whether a child's class had no text to give or no memory to make one cannot be told apart: the child is skipped.
TEST(WithoutMemory, AnAnswerIsWrittenWholeOrNotAtAll)
{
    NCLNodeList list;
    for (int i = 0; i < 20; ++i) {
        list.addNode(new NCLNode);
        list.nodes[i]->id = kLong;
    }
    const std::string whole = taken(list.serializeResponse());
    const int refusals = withMemoryRefused([&] { return JsonText(list.serializeResponse()); },
                                           [&](const JsonText& text, bool refused) {
                                               EXPECT_EQ(text == nullptr, refused);
                                               EXPECT_EQ(text ? text.get() : whole, whole);
                                           });
    EXPECT_GT(refusals, 0);
}

// The text fits up to its last member, for which there is no room then.
TEST(WithoutMemory, AMessageThatEndsInANumberIsWrittenWholeOrNotAtAll)
{
    for (std::size_t size = 470; size < 520; ++size) {
        Scripted message([size](JsonWriter& json) {
            json.put("text", std::string(size, 'a'));
            json.put("number", 4000000000u);
        });
        expectWholeOrNothing(message);
    }
}

TEST(WithoutMemory, AParsedItemIsReadWithItsReasonOrFails)
{
    const Tree item = treeOf(R"({"action": "start"})");
    withMemoryRefused(
        [&] {
            GingaAppAction action;
            unsigned char error = 0;
            return action.deserializeObject(item.get(), error);
        },
        [](bool read, bool refused) { EXPECT_EQ(read, !refused); });
}

TEST(WithoutMemory, AContainerOfAnApplicationsChildrenIsJsonOrNothing)
{
    ServiceList list;
    list.addService(new Inheriting<Service>);
    list.addService(new Service);
    list.addService(new Inheriting<Service>);
    const int refusals = withMemoryRefused([&] { return JsonText(list.serialize()); },
                                           [&](const JsonText& text, bool refused) {
                                               ServiceList read;
                                               EXPECT_EQ(read.deserialize(text.get()), text != nullptr);
                                               EXPECT_GE(read.services.size(), text ? 2u : 0u);
                                               EXPECT_TRUE(refused || read.services.size() == 3);
                                           });
    EXPECT_GT(refusals, 0);
}

/// That a message is read from `text`, or fails; it is made anew for each try.
template <class Message>
void expectReadOrFailed(const std::string& text)
{
    std::unique_ptr<Message> message;
    const int refusals = withMemoryRefused(
        [&]() -> bool {
            message.reset();
            try {
                message = std::make_unique<Message>();
            } catch (const std::bad_alloc&) {
                return false;
            }
            return message->deserialize(text.c_str());
        },
        [](bool read, bool refused) { EXPECT_EQ(read, !refused); });
    EXPECT_GT(refusals, 0);
}

TEST(WithoutMemory, AMessageIsReadOrFails)
{
    Service service;
    service.serviceContextId = service.serviceName = kLong;
    expectReadOrFailed<Service>(textOf(service));
    expectReadOrFailed<ServiceList>(textOf(*serviceList()));
    expectReadOrFailed<ScreenDescription>(textOf(*screenDescription()));
    expectReadOrFailed<Holder>(textOf(*std::make_unique<Holder>(service.clone())));
}

TEST(WithoutMemory, ANestedFractionIsReadOrFails)
{
    expectReadOrFailed<ServiceList>(R"({"serviceList": [{"serviceId": 2.5}, {"serviceId": 2.9999999999999996}]})");
}

TEST(WithoutMemory, AnAnsweredTypeIsReadFromItsCheckedTextOrFails)
{
    const std::string text = textOf(*serviceList());
    const CheckedText checked(text.c_str());
    withMemoryRefused(
        [&] {
            ServiceList list;
            return fill(list, checked, text.c_str());
        },
        [](bool read, bool refused) { EXPECT_EQ(read, !refused); });
}

TEST(WithoutMemory, AParsedItemIsReadOrFails)
{
    const Tree item = treeOf(textOf(*screenDescription()));
    withMemoryRefused(
        [&] {
            ScreenDescription description;
            return description.deserializeObject(item.get());
        },
        [](bool read, bool refused) { EXPECT_EQ(read, !refused); });
}

TEST(WithoutMemory, AHeaderIsUnknown)
{
    withMemoryRefused(
        [] { return Serializable::deserializeHeader(R"({"HEADER": "success"})"); },
        [](DataType type, bool refused) { EXPECT_EQ(type, refused ? DataTypeUnknown : DataTypeSuccess); });
}

TEST(WithoutMemory, AHeaderIsRemovedOrTheTextIsGone)
{
    withMemoryRefused([] { return JsonText(Serializable::removeHeader(strdup(R"({"HEADER": "success"})"))); },
                      [](const JsonText& text, bool refused) { EXPECT_EQ(text == nullptr, refused); });
}

TEST(WithoutMemory, TheFactoryMakesNothing)
{
    for (const DataType type : allTypes()) {
        const bool makes = std::unique_ptr<Serializable>(Serializable::factory(type)) != nullptr;
        withMemoryRefused(
            [&] { return std::unique_ptr<Serializable>(Serializable::factory(type)); },
            [&](const auto& message, bool refused) { EXPECT_EQ(message != nullptr, makes && !refused) << type; });
    }
}

/// That a clone of a filled message is whole, or none.
template <class Message>
void expectCloneOrNone(Message& message)
{
    const std::string whole = textOf(message);
    const int refusals = withMemoryRefused([&] { return std::unique_ptr<Message>(message.clone()); },
                                           [&](const auto& clone, bool refused) {
                                               EXPECT_EQ(clone == nullptr, refused);
                                               EXPECT_EQ(clone ? textOf(*clone) : whole, whole);
                                           });
    EXPECT_GT(refusals, 0);
}

TEST(WithoutMemory, ACloneIsWholeOrNone)
{
    for (const Sample& sample : samples()) {
        const std::unique_ptr<Serializable> message = sample.filled();
        if (auto* const service = dynamic_cast<Service*>(message.get())) expectCloneOrNone(*service);
        if (auto* const tokens = dynamic_cast<ServiceBindTokens*>(message.get())) expectCloneOrNone(*tokens);
        if (auto* const target = dynamic_cast<TargetApp*>(message.get())) expectCloneOrNone(*target);
    }
}

TEST(WithoutMemory, AnAddedElementIsDeleted)
{
    int destroyed = 0;
    {
        ServiceList list;
        Service* const service = new Counted<Service>(destroyed);
        {
            const FailingMemory memory(1);
            list.addService(service);
        }
        EXPECT_TRUE(list.services.empty());
        EXPECT_EQ(destroyed, 1);
    }
    {
        ScreenItem item;
        ScreenItem* const child = new Counted<ScreenItem>(destroyed);
        {
            const FailingMemory memory(1);
            item.addItem(child);
        }
        EXPECT_TRUE(item.items.empty());
        EXPECT_EQ(destroyed, 2);
    }
    EXPECT_EQ(destroyed, 2);
}

}  // namespace
}  // namespace OrvuTests
