#include <gtest/gtest.h>
#include <memory>

#include "orvu/Ncl.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// `count` nodes, each an interface of the one before.
std::unique_ptr<NCLNode> nestedNodes(int count)
{
    auto node = std::make_unique<NCLNode>();
    for (; count > 1; --count) {
        auto outer = std::make_unique<NCLNode>();
        outer->addInterface(node.release());
        node = std::move(outer);
    }
    return node;
}

int depthOf(const NCLNode& node)
{
    return node.interfaces.empty() ? 1 : 1 + depthOf(*node.interfaces[0]);
}

TEST(Nodes, AreWrittenAndReadFiveHundredDeep)
{
    NCLNode read;
    ASSERT_TRUE(read.deserialize(textOf(*nestedNodes(500)).c_str()));
    EXPECT_EQ(depthOf(read), 500);
}

TEST(Nodes, AreNotWrittenDeeper)
{
    EXPECT_EQ(nestedNodes(501)->serialize(), nullptr);
    EXPECT_EQ(nestedNodes(3000)->serialize(), nullptr);
}

TEST(Nodes, AreNotReadDeeper)
{
    std::string text = "{}";
    for (int i = 0; i < 500; ++i)
        text = R"({"interfaces":[)" + text + "]}";
    NCLNode node;
    EXPECT_FALSE(node.deserialize(text.c_str()));
    EXPECT_TRUE(node.interfaces.empty());
}

}  // namespace
}  // namespace OrvuTests
