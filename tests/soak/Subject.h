#pragma once

#include "soak/Crowd.h"
#include "support/Observed.h"
#include "support/PortLease.h"
#include "wire/Receiver.h"

namespace OrvuTests {

/// What the measured process did in a round.
struct Work {
    long asked = 0;
    long pushes = 0;  ///< That a client took.
    long servers = 0;
    long heard = 0;  ///< Pushes that its own listeners heard.
    long wrong = 0;  ///< Messages received that were never pushed.
};

/// The library in all of its roles: it answers requests, asks a peer on `peerPort`, pushes through servers that it
/// makes and stops, and listens to them.
class Subject {
public:
    /// Throws std::runtime_error when the peer cannot be reached.
    explicit Subject(int peerPort);

    Ports ports() const { return {receiver_.port(), tcp_.port(), webSocket_.port()}; }
    /// Listens for requests again.
    void listenAgain() const;
    /// Asks and pushes as fast as it can.
    Work workUntil(Clock::time_point end) const;
    /// Stops listening, and waits until the threads of the work are gone. Throws std::runtime_error when they stay.
    void settle() const;

private:
    const Receiver receiver_;
    const PortLease tcp_;
    const PortLease webSocket_;
    int restingThreads_;
};

}  // namespace OrvuTests
