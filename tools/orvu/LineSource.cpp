#include "LineSource.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Ending.h"

namespace OrvuTool {
namespace {

constexpr std::size_t kLongestLine = 64 * 1024 * 1024;

bool isDirectory(int descriptor)
{
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

// Without O_NONBLOCK, opening a pipe that has no writer yet would wait, and no signal could end that.
LineSource::LineSource(const std::string& file, Ending& ending)
    : ending_(ending),
      opened_(file == "-" ? -1 : open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)),
      descriptor_(file == "-" ? STDIN_FILENO : opened_.fd())
{
    if (descriptor_ < 0)
        fault_ = std::strerror(errno);
    else if (isDirectory(descriptor_))
        fault_ = std::strerror(EISDIR);
}

std::optional<std::string> LineSource::next()
{
    std::optional<std::string> line;
    do {
        line = nextOfAny();
    } while (line && line->empty());
    return line;
}

std::optional<std::string> LineSource::nextOfAny()
{
    while (fault_.empty() && !ended_ && !ending_.hasCome()) {
        std::optional<std::string> line = lines_.next();
        if (line) return line;
        if (lines_.size() > kLongestLine)
            fault_ = "a line is longer than 64 MiB";
        else if (!readMore() && lines_.size() > 0)
            return lines_.rest();
    }
    return std::nullopt;
}

/// False at the end; true also when nothing came.
bool LineSource::readMore()
{
    char bytes[65536];
    pollfd input{descriptor_, POLLIN, 0};
    if (ending_.waitFor({&input}) == Ending::Awaited::Signal) return true;
    const ssize_t size = read(descriptor_, bytes, sizeof bytes);
    if (size > 0) lines_.add({bytes, static_cast<std::size_t>(size)});
    if (size < 0 && errno != EINTR && errno != EAGAIN) fault_ = std::strerror(errno);
    ended_ = size == 0;
    return !ended_;
}

}  // namespace OrvuTool
