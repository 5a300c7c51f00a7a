#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <pthread.h>
#include <string>

#include "orvu/Ncl.h"
#include "orvu/PairingScreens.h"
#include "support/Messages.h"
#include "support/Sanitizers.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

constexpr std::size_t kSmallStack = 1 << 20;  // of the threads of some systems
constexpr int kDeepest = 500;                 // nodes or items; each takes two of the thousand levels of a text

void* call(void* work)
{
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
}

/// Runs `work` on a thread with a stack of so many bytes, and waits for it.
void runOnStackOf(std::size_t bytes, std::function<void()> work)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &work), 0);
    pthread_attr_destroy(&attributes);
    pthread_join(thread, nullptr);
}

void nest(ScreenItem& outer, ScreenItem* inner)
{
    outer.addItem(inner);
}

void nest(NCLNode& outer, NCLNode* inner)
{
    outer.addInterface(inner);
}

std::size_t childrenOf(const ScreenItem& item)
{
    return item.items.size();
}

std::size_t childrenOf(const NCLNode& node)
{
    return node.interfaces.size();
}

template <class Message>
std::unique_ptr<Message> deepest()
{
    auto message = std::make_unique<Message>();
    for (int i = 1; i < kDeepest; ++i) {
        auto outer = std::make_unique<Message>();
        nest(*outer, message.release());
        message = std::move(outer);
    }
    return message;
}

/// Writes, reads, writes again and deletes the deepest message on a small stack.
template <class Message>
void takeOnASmallStack()
{
    if (kUnderASanitizer) GTEST_SKIP() << "sanitizers need far more of the stack";
    runOnStackOf(kSmallStack, [] {
        const std::string text = textOf(*deepest<Message>());
        Message read;
        ASSERT_TRUE(read.deserialize(text.c_str()));
        EXPECT_EQ(childrenOf(read), 1U);
        EXPECT_EQ(textOf(read), text);
    });
}

TEST(AStackOfOneMebibyte, CarriesTheDeepestScreenItems)
{
    takeOnASmallStack<ScreenItem>();
}

TEST(AStackOfOneMebibyte, CarriesTheDeepestNodes)
{
    takeOnASmallStack<NCLNode>();
}

}  // namespace
}  // namespace OrvuTests
