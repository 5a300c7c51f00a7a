#pragma once

#include <atomic>
#include <cstddef>
#include <ifaddrs.h>
#include <vector>

/// \file
/// What the system does rarely, on demand: programs that link Faults.cpp, with the options that go with it, stand between the
/// library's objects and the system's functions.

namespace OrvuTests {

extern std::atomic<int> minutesThatPass;           ///< Waits of a minute that end at once.
extern std::atomic<int> minutesThatFail;           ///< Those that fail.
extern std::atomic<int> sendsThatFindNoRoom;       ///< Sends that the system takes nothing of.
extern std::atomic<int> sendsUntilOneFindsNoRoom;  ///< Again and again. 0: none does.
extern std::atomic<std::size_t> mostThatIsSent;    ///< The bytes that it takes at once. 0: all.
extern std::atomic<int> acceptsWithoutDescriptor;  ///< How many failed for want of one.
extern std::vector<int>* sentTo;                   ///< Keeps the descriptors of sends.
extern std::atomic<int>
    awaitedShutdown;                ///< What is accepted or received comes once this one is shut down. -1: at once.
extern std::atomic<bool> isHeldUp;  ///< Something has come and waits for that.
extern std::atomic<bool> libraryHasNoMemory;  ///< Its threads have none.
extern ifaddrs* interfaces;                   ///< Those of this machine; null: the list cannot be had.

}  // namespace OrvuTests
