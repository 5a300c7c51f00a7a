#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>

namespace Orvu {

/// Where servers are to listen: an IPv4 address of this host, or every interface.
class ListenAddress {
public:
    /// Every interface for an empty text and "0.0.0.0".
    explicit ListenAddress(std::string text = "") : text_(std::move(text)) {}

    /// None, after a log line that begins with `caller`, when it is not an IPv4 address, or not one of this host.
    std::optional<in_addr> usable(const char* caller) const;
    /// Whether it names one interface.
    bool isOne() const { return !text_.empty() && text_ != "0.0.0.0"; }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

/// The first IPv4 address of this host that is not 127.0.0.1; that one without another. Throws std::bad_alloc.
std::string outsideAddress();

}  // namespace Orvu
