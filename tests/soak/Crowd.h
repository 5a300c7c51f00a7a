#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>

namespace OrvuTests {

constexpr std::chrono::seconds kRound{1};

/// What the push servers push.
inline const std::string kPushed = R"({"HEADER":"serviceSelection","serviceContextId":"1848.1848.01"})";

/// Where the peers find the servers of the process that is watched.
struct Ports {
    int requests = 0;
    int tcp = 0;
    int webSocket = 0;
};

/// What the peers of a round did.
struct Tally {
    long exchanges = 0;  ///< Requests, good and bad.
    long clients = 0;    ///< That connected to a push server.
    long wrong = 0;      ///< How often a peer got a wrong result.
};

/// The peers of this process, in a process of their own: what they take of the system is not this one's. They come in
/// rounds.
class Crowd {
public:
    /// Starts the process; before this one has threads.
    Crowd();
    /// Ends it.
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    /// Where it answers requests, well and badly.
    int port() const { return port_; }
    /// Lets the peers come.
    void begin(const Ports& ports) const;
    /// Waits until they are gone. Throws std::runtime_error when one of them timed out.
    Tally end() const;

private:
    int line_;  // the descriptor through which both processes talk
    pid_t process_;
    int port_;
};

}  // namespace OrvuTests
