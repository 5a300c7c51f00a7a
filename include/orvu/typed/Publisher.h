#pragma once

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "orvu/typed/Messages.h"

namespace Orvu {

/// A push server; it stops when it is destroyed. There may be any number of them. Any thread may push, several at once.
///
///     Orvu::Publisher publisher("websocket", 9000, 9010);
///     if (publisher) publisher.push(message);
class Publisher {
public:
    /// Opens a server, "tcp" or "websocket", on the first free port from `minPort` to `maxPort`, on the address that
    /// OrvuRestInterface::setListenAddress() names.
    Publisher(const std::string& protocol, int minPort, int maxPort)
        : server_(OrvuRestInterface::getInstance()->createServer(protocol, minPort, maxPort))
    {
        if (server_ && server_->error != 0) server_.reset();
        if (!server_) reason_ = reasonFor(protocol, minPort, maxPort);
    }
    /// The same on one port; with 0 the system chooses it.
    explicit Publisher(const std::string& protocol, int port = 0) : Publisher(protocol, port, port) {}
    Publisher(const Publisher&) = delete;
    Publisher& operator=(const Publisher&) = delete;
    ~Publisher() { stop(); }

    /// Whether the server was opened and is not stopped.
    explicit operator bool() const { return server_ && !isStopped_; }
    /// Why it was not opened; empty when it was.
    const std::string& reason() const { return reason_; }
    /// The TCP port on which listeners connect; 0 when it was not opened. Tell it to them: they do not find it by
    /// themselves.
    int port() const { return server_ ? server_->port : 0; }
    /// The IPv4 address, dotted: this device's, or the one that it listens on; empty when it was not opened.
    std::string address() const { return server_ ? server_->ipAddress : std::string(); }

    /// Pushes a message, or a unique_ptr to one, or bytes such as a std::string: to everybody who listens. True when
    /// at least one listener took them. Its "HEADER" is switched on; a message that has none by itself is refused,
    /// with a log line.
    template <class Given>
    bool push(Given&& given)
    {
        if constexpr (std::is_convertible_v<const Given&, std::string_view>) {
            return pushBytes(given);
        } else {
            return Detail::withMessage(std::forward<Given>(given), [this](Serializable* message) {
                if (!Detail::isReadyToSend(message, "Orvu::Publisher")) return false;
                const std::unique_ptr<char, void (*)(void*)> text(message->serialize(), std::free);
                return text && pushBytes({text.get(), std::strlen(text.get())});
            });
        }
    }

    /// Closes the listeners' connections and the port, for good. A push on another thread ends, and is false; destroy
    /// the object after it has returned.
    void stop()
    {
        if (server_ && !isStopped_.exchange(true)) OrvuRestInterface::getInstance()->stopServer(server_->handler);
    }

private:
    static std::string reasonFor(const std::string& protocol, int minPort, int maxPort)
    {
        if (protocol != "tcp" && protocol != "websocket")
            return "the protocol is \"tcp\" or \"websocket\", not \"" + protocol + "\"";
        if (minPort == maxPort) return "TCP port " + std::to_string(minPort) + " is not available";
        return "no TCP port from " + std::to_string(minPort) + " to " + std::to_string(maxPort) + " is available";
    }

    bool pushBytes(std::string_view bytes)
    {
        auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));  // which are only read
        const auto size = static_cast<unsigned>(bytes.size());
        return *this && size == bytes.size() &&
               OrvuRestInterface::getInstance()->sendMessage(server_->handler, data, size);
    }

    std::unique_ptr<SocketServerInfo> server_;
    std::string reason_;
    std::atomic<bool> isStopped_{false};
};

}  // namespace Orvu
