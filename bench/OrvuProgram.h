#pragma once

#include <memory>

#include "orvu/Services.h"

namespace OrvuBench {

/// The services as an application hands them to the library.
std::unique_ptr<Orvu::ServiceList> orvuList();

/// The library on both sides: its request server answers, its request client asks. One a process.
class OrvuProgram {
public:
    /// Listens on a free port of this machine. Throws std::runtime_error.
    OrvuProgram();
    ~OrvuProgram();
    OrvuProgram(const OrvuProgram&) = delete;
    OrvuProgram& operator=(const OrvuProgram&) = delete;

    /// One exchange, the client's part; whether the right answer came. Any thread.
    bool askTime() const;
    bool askList() const;
};

}  // namespace OrvuBench
