#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "messages/core/Json.h"
#include "support/FailingMemory.h"
#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

/// \file
/// What holds for every message of the library, whatever its family.

namespace OrvuTests {
namespace {

TEST(EveryMessage, IsWrittenWholeOrNotAtAllWithoutMemory)
{
    for (const Sample& sample : samples()) {
        const std::unique_ptr<Serializable> message = sample.filled();
        const JsonText whole(message->serialize());
        withMemoryRefused([&] { return JsonText(message->serialize()); },
                          [&](const JsonText& text, bool refused) {
                              EXPECT_STREQ(text.get(), refused ? nullptr : whole.get()) << sample.name;
                          });
    }
}

TEST(EveryMessage, IsReadOrFailsWithoutMemory)
{
    for (const Sample& sample : samples()) {
        const JsonText text(sample.filled()->serialize());
        const bool isReadable = sample.empty()->deserialize(text.get());
        std::unique_ptr<Serializable> message;
        for (int nth = 1, refused = 1; refused; ++nth) {
            message = sample.empty();
            const FailingMemory memory(nth);
            const bool read = message->deserialize(text.get());
            refused = memory.refused();
            EXPECT_EQ(read, isReadable && !refused) << sample.name << nth;
        }
    }
}

TEST(EveryMessage, IsReadFromAParsedItemOrFailsWithoutMemory)
{
    for (const Sample& sample : samples()) {
        const JsonTree tree = parseJson(textOf(*sample.filled()).c_str());
        if (!tree) continue;  // one that is never written
        const bool isReadable = sample.empty()->deserializeObject(tree.get());
        std::unique_ptr<Serializable> message;
        for (int nth = 1, refused = 1; refused; ++nth) {
            message = sample.empty();
            const FailingMemory memory(nth);
            const bool read = message->deserializeObject(tree.get());
            refused = memory.refused();
            EXPECT_EQ(read, isReadable && !refused) << sample.name << nth;
        }
    }
}

}  // namespace
}  // namespace OrvuTests
