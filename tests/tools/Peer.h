#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/PortLease.h"

namespace OrvuTests {

/// The server's end of exchanges, below any message: it keeps what a client sends and gives back the bytes that it is
/// told.
class Peer {
public:
    /// `answer` gives what is written to each client that sent a frame; it may take its time.
    explicit Peer(std::function<std::string()> answer);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    std::string portText() const { return std::to_string(port_.port()); }
    /// The frames received, in order, each with its length. Clients that sent nothing are not among them.
    std::vector<std::string> frames();

private:
    void accept();
    void serve(int client);

    PortLease port_;
    std::function<std::string()> answer_;
    int listening_;
    std::thread accepting_;
    std::mutex mutex_;
    std::vector<std::string> frames_;
};

}  // namespace OrvuTests
