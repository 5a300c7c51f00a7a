#pragma once

#include <csignal>
#include <stdexcept>
#include <string>

#include "support/Observed.h"
#include "support/PortLease.h"
#include "support/Process.h"

namespace OrvuTests {

/// The program of publisher.cpp, running.
class Publisher {
public:
    /// `limits`: what a shell does before the program takes its place, such as "ulimit -n 64".
    explicit Publisher(const std::string& protocol, const std::string& limits = "true");

    int port() const { return lease_.port(); }
    /// Its process number.
    const std::string& number() const { return number_; }

    /// Whether the message went out.
    bool push();
    void takeDescriptors();
    void giveDescriptorsBack();

    /// How many log lines so far begin with `beginning`.
    int count(const std::string& beginning);

    /// Ends it, after stopping or without.
    Ended end(int signal);

private:
    /// Sends a signal and returns the line that answers it.
    std::string told(int signal);

    PortLease lease_;
    Process process_;
    std::string number_;
    std::size_t said_ = 0;  // what of its output is known
};

/// Waits until a thread of the program has had to wait `times` times more.
bool waitForWaits(const Publisher& publisher, int thread, int times);

}  // namespace OrvuTests
