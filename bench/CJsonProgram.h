#pragma once

#include "bench/PlainSockets.h"

namespace OrvuBench {

/// The plain sockets with cJSON on both sides: what an application would write for the same exchanges without the
/// library.
class CJsonProgram {
public:
    /// One exchange, the client's part; whether the right answer came. Any thread.
    bool askTime() const;
    bool askList() const;

private:
    static void answer(int connection, const char* request);

    PlainServer server_{answer};
};

}  // namespace OrvuBench
