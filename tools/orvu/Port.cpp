#include "Port.h"

#include <charconv>

namespace OrvuTool {

std::optional<int> portIn(const std::string& text)
{
    int port = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || rest != end || port < 0 || port > 65535) return std::nullopt;
    return port;
}

}  // namespace OrvuTool
