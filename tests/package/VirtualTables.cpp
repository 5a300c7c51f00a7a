#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <type_traits>

#include "orvu/Serializable.h"
#include "transport/OrvuRestSimpleServer.h"

// Programs and libraries that were built against an older release call through these tables: a function that moves, or
// one more before the end, makes them call the wrong one.

namespace Orvu {
namespace {

/// The place of a virtual function in its class's table. Itanium C++ ABI, 2.3: a pointer to it holds its offset in
/// bytes, plus one; on 32-bit ARM the one stands in the second word, doubled.
template <class Function>
std::size_t slotOf(Function function)
{
    static_assert(std::is_member_function_pointer_v<Function> && sizeof(Function) == 2 * sizeof(std::uintptr_t));
    std::uintptr_t words[2];
    std::memcpy(words, &function, sizeof words);
#ifdef __arm__
    EXPECT_EQ(words[1] & 1, 1U) << "not virtual";
    return words[0] / sizeof(void*);
#else
    EXPECT_EQ(words[0] & 1, 1U) << "not virtual";
    return (words[0] - 1) / sizeof(void*);
#endif
}

/// A class whose one new virtual function takes the place after the last of its base.
template <class Base>
struct Next : Base {
    virtual void next();
};

using Read = bool (Serializable::*)(const char*);
using ReadWithError = bool (Serializable::*)(const char*, unsigned char&);

TEST(TheTableOfSerializable, BeginsWithItsTwoDestructors)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<Serializable>);
    EXPECT_EQ(slotOf(&Serializable::serialize), 2U);  // and the two take the only places left in front
}

TEST(TheTableOfSerializable, GoesOnWithWritingReadingAndReadingWithAnError)
{
    EXPECT_EQ(slotOf(&Serializable::serialize), 2U);
    EXPECT_EQ(slotOf(static_cast<Read>(&Serializable::deserialize)), 3U);
    EXPECT_EQ(slotOf(static_cast<ReadWithError>(&Serializable::deserialize)), 4U);
}

TEST(TheTableOfSerializable, EndsThere)
{
    EXPECT_EQ(slotOf(&Next<Serializable>::next), 5U);
}

TEST(TheTableOfASimpleServer, BeginsWithItsTwoDestructors)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<OrvuRestSimpleServer>);
    EXPECT_EQ(slotOf(&OrvuRestSimpleServer::configure), 2U);
}

TEST(TheTableOfASimpleServer, GoesOnWithConfigureStartStopAndSend)
{
    EXPECT_EQ(slotOf(&OrvuRestSimpleServer::configure), 2U);
    EXPECT_EQ(slotOf(&OrvuRestSimpleServer::start), 3U);
    EXPECT_EQ(slotOf(&OrvuRestSimpleServer::stop), 4U);
    EXPECT_EQ(slotOf(&OrvuRestSimpleServer::send), 5U);
}

TEST(TheTableOfASimpleServer, EndsThere)
{
    EXPECT_EQ(slotOf(&Next<OrvuRestSimpleServer>::next), 6U);
}

}  // namespace
}  // namespace Orvu
