#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "Descriptor.h"

namespace OrvuTool {

/// A relay between the peers and the library's request server that cuts answers on the way.
///
/// The library sends only whole frames, so a frame that ends in the middle has to be made outside of it. The relay
/// passes bytes on as they come to the server, on a connection of its own for each peer. It passes an answer on once
/// the server has closed its connection. Never destroyed: its threads may outlive main().
class CuttingRelay {
public:
    /// Marks an answer of which only the first half is to reach the peer: `text` after a mark that begins no JSON text.
    static std::string marked(const std::string& text) { return kMark + text; }
    /// How many bytes of a text of this size reach the peer then.
    static std::size_t passed(std::size_t size) { return size / 2; }

    /// Relays to this port of 127.0.0.1.
    explicit CuttingRelay(int serverPort) : serverPort_(serverPort) {}

    /// Takes peers from now on; false when the port is not available. An empty address is every interface. Once.
    bool listen(const std::string& address, int port);

    /// The port that it listens on.
    int port() const;

    /// Takes no more peers, and waits up to a second for answers on their way.
    void stop();

private:
    static constexpr char kMark = '\x01';

    void accept();
    void serveOnAThread(Descriptor peer);
    void serve(Descriptor peer);
    static std::string frameToPass(const std::string& frame);
    void countPeer(int change);

    int serverPort_;
    Descriptor listening_;
    std::thread accepting_;
    std::mutex mutex_;
    std::condition_variable peerLeft_;
    int peers_ = 0;
};

}  // namespace OrvuTool
