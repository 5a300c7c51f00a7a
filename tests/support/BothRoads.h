#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/RandomJson.h"
#include "support/Children.h"
#include "support/Messages.h"
#include "support/SampleFields.h"

/// \file
/// A child whose class is the library's is written into its container's text and read from it; one of an
/// application's class goes through its virtual functions and a text of its own. The result must be the same.

namespace OrvuTests {

/// That a container writes the same around a child on both roads; `textAround` gives the child, filled in, to a
/// container and returns that one's text.
template <class Child, class TextAround>
void expectTheSameText(TextAround textAround)
{
    const std::string text = textAround(filled<Child>());
    EXPECT_NE(text.find('{'), std::string::npos);
    EXPECT_EQ(textAround(filled<Inheriting<Child>>()), text);
    EXPECT_EQ(textAround(filled<Forwarding<Child>>()), text);
}

/// What `read` returns, or which exception ended it.
template <class Read>
std::string outcomeOf(Read read)
{
    try {
        return read();
    } catch (const std::invalid_argument&) {
        return "invalid argument";
    } catch (const std::out_of_range&) {
        return "out of range";
    }
}

/// That a container reads a child that it holds alike on both roads, whatever values a peer sends under the child's
/// keys. `readAround` gives the child to a container, lets that read the item, and returns a text that shows what came
/// of it.
template <class Child, class ReadAround>
void expectTheSameRead(const std::vector<std::string>& keys, ReadAround readAround)
{
    for (unsigned seed = 1; seed <= 500 && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const Tree tree = random.once(8) ? random.anyValue() : random.anyObject(keys);
        const std::string item = taken(cJSON_PrintUnformatted(tree.get()));
        const std::string exact = outcomeOf([&] { return readAround(new Child, item); });
        EXPECT_EQ(outcomeOf([&] { return readAround(new Inheriting<Child>, item); }), exact) << item;
        EXPECT_EQ(outcomeOf([&] { return readAround(new Forwarding<Child>, item); }), exact) << item;
    }
}

/// The text around an array of elements.
struct Around {
    std::string before;
    std::string behind;
};

/// Whether a list keeps elements that cannot be read.
enum class Unreadable { Dropped, Kept };

using Texts = std::vector<std::string>;

/// What the items of an array read as, each on its own; in `outcome` how that ended.
template <class Child>
Texts readAlone(const cJSON* array, Unreadable unreadable, std::string& outcome)
{
    Texts texts;
    outcome = outcomeOf([&] {
        for (cJSON* item = array->child; item; item = item->next) {
            Child alone;
            if (alone.deserializeObject(item) || unreadable == Unreadable::Kept) texts.push_back(textOf(alone));
        }
        return "read";
    });
    return texts;
}

/// That the elements of a list read as they do on their own, whatever values a peer sends under their keys.
template <class List, class Child>
void expectReadAsAlone(std::vector<Child*> List::*elements, const std::vector<std::string>& keys, const Around& around,
                       Unreadable unreadable = Unreadable::Dropped)
{
    for (unsigned seed = 1; seed <= 500 && !testing::Test::HasFailure(); ++seed) {
        RandomJson random(seed);
        const Tree array(cJSON_CreateArray());
        for (unsigned left = 1 + random.below(4); left > 0; --left)
            cJSON_AddItemToArray(array.get(), (random.once(8) ? random.anyValue() : random.anyObject(keys)).release());
        const std::string items = taken(cJSON_PrintUnformatted(array.get()));
        std::string outcome;
        const Texts expected = readAlone<Child>(treeOf(items).get(), unreadable, outcome);
        List list;
        const std::string text = around.before + items + around.behind;
        EXPECT_EQ(outcomeOf([&] { return list.deserialize(text.c_str()) ? "read" : "not read"; }), outcome) << items;
        Texts texts;
        for (Child* element : list.*elements)
            texts.push_back(textOf(*element));
        EXPECT_EQ(texts, expected) << items;
    }
}

}  // namespace OrvuTests
