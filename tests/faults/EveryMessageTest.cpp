#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "faults/Report.h"
#include "messages/core/CJsonBridge.h"
#include "support/FailingMemory.h"
#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

/// \file
/// What holds for every message of the library, whatever its family.

namespace OrvuTests {
namespace {

/// How many allocations there were to refuse while `read` reads a message that `sample` makes anew for each try.
template <class Read>
int expectReadOrFailed(const Sample& sample, Read read)
{
    const bool isReadable = read(*sample.empty());
    for (int nth = 1;; ++nth) {
        const std::unique_ptr<Serializable> message = sample.empty();
        const FailingMemory memory(nth);
        const bool isRead = read(*message);
        EXPECT_EQ(isRead, isReadable && !memory.refused()) << sample.name << nth;
        if (!memory.refused()) return nth - 1;
    }
}

TEST(EveryMessage, IsWrittenWholeOrNotAtAllWithoutMemory)
{
    int tried = 0;
    for (const Sample& sample : samples()) {
        const std::unique_ptr<Serializable> message = sample.filled();
        const JsonText whole(message->serialize());
        tried += withMemoryRefused([&] { return JsonText(message->serialize()); },
                                   [&](const JsonText& text, bool refused) {
                                       EXPECT_STREQ(text.get(), refused ? nullptr : whole.get()) << sample.name;
                                   });
    }
    report("writing every message: allocations", tried);
}

TEST(EveryMessage, IsReadOrFailsWithoutMemory)
{
    int tried = 0;
    for (const Sample& sample : samples()) {
        const JsonText text(sample.filled()->serialize());
        tried += expectReadOrFailed(sample, [&](Serializable& message) { return message.deserialize(text.get()); });
    }
    report("reading every message: allocations", tried);
}

TEST(EveryMessage, IsReadFromAParsedItemOrFailsWithoutMemory)
{
    int tried = 0;
    for (const Sample& sample : samples()) {
        const JsonTree tree = parseJson(textOf(*sample.filled()).c_str());
        if (!tree) continue;  // one that is never written
        tried +=
            expectReadOrFailed(sample, [&](Serializable& message) { return message.deserializeObject(tree.get()); });
    }
    report("reading every message from a parsed item: allocations", tried);
}

}  // namespace
}  // namespace OrvuTests
