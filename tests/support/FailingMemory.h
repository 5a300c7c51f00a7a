#pragma once

namespace OrvuTests {

/// Refuses one allocation while it lives, of those that `new` asks for, that cJSON asks for, and that
/// the library's objects ask of `realloc`. One at a time, on one thread. For programs that link `orvu-failing-memory`.
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

/// Calls `action` with the first allocation refused, with the second, and so on, until none is; `judge` sees, after each
/// call, what came of it and whether memory was refused. Returns how many calls met a refusal.
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
