#pragma once

#include <cstddef>

/// \file
/// For programs that link `orvu-failing-memory`: what `new` asks for there, what cJSON asks for, and what the library's
/// objects ask of `realloc` may be refused.

namespace OrvuTests {

/// Has each such allocation ask `refuses` first, on its own thread; null: none is refused. While no other thread
/// calls cJSON.
void refuseAllocations(bool (*refuses)());

/// Refuses one allocation of its thread while it lives. One at a time.
class FailingMemory {
public:
    /// `nth` counts from 1.
    explicit FailingMemory(int nth);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether that allocation was asked for.
    bool refused() const;
};

/// Counts what its thread asks of `new`.
class CountedMemory {
public:
    CountedMemory();
    std::size_t bytes() const;  ///< Since it was made; what was released meanwhile counts as well.

private:
    const std::size_t before_;
};

/// Calls `action` with the first allocation refused, with the second, and so on, until none is; `judge` sees, after
/// each call, what came of it and whether memory was refused. Returns how many calls met a refusal.
template <class Action, class Judge>
int withMemoryRefused(Action action, Judge judge)
{
    for (int nth = 1;; ++nth) {
        bool refused = false;
        auto result = [&] {
            const FailingMemory memory(nth);
            auto given = action();
            refused = memory.refused();
            return given;
        }();
        judge(result, refused);
        if (!refused) return nth - 1;
    }
}

}  // namespace OrvuTests
