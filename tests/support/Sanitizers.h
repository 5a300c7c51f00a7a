#pragma once

#include "support/BuiltProgram.h"

namespace OrvuTests {

/// Whether this is built with a sanitizer that keeps memory of its own and slows everything down.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kUnderASanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kUnderASanitizer = true;
#else
constexpr bool kUnderASanitizer = false;
#endif
#else
constexpr bool kUnderASanitizer = false;
#endif

/// Whether all code takes many times as long as elsewhere: tests of many rounds have fewer here.
constexpr bool kIsSlow = kUnderASanitizer || kEmulated;

}  // namespace OrvuTests
