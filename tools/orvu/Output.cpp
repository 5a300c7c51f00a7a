#include "Output.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "Ending.h"
#include "ExitCode.h"

namespace OrvuTool {
namespace {

/// Opens the null device on every standard descriptor that is closed, so that no socket ends up as one, and on 1.
void parkStandardOutput()
{
    int null = open("/dev/null", O_RDWR);
    while (null >= 0 && null <= STDERR_FILENO)
        null = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0) return;
    dup2(null, STDOUT_FILENO);
    close(null);
}

}  // namespace

Output::Output() : descriptor_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
{
    parkStandardOutput();
}

bool Output::writeSome(std::string_view& text)
{
    const ssize_t size = ::write(descriptor_, text.data(), text.size());
    if (size >= 0) {
        text.remove_prefix(static_cast<size_t>(size));
        return true;
    }
    if (errno == EAGAIN) {  // another process shares the pipe and made it non-blocking
        pollfd ready{descriptor_, POLLOUT, 0};
        return poll(&ready, 1, -1) >= 0 || errno == EINTR;
    }
    return errno == EINTR;
}

void Output::write(std::string_view text)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    while (!text.empty() && error_ == 0) {
        if (!writeSome(text)) error_ = errno;
        if (error_ != 0 && error_ != EPIPE) complain(std::string("standard output: ") + std::strerror(error_));
    }
}

bool Output::hasFailed()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return error_ != 0;
}

/// Where there is room, PIPE_BUF bytes fit in. False when a signal came first.
bool Output::waitForRoom(Ending& ending) const
{
    pollfd room{descriptor_, POLLOUT, 0};
    if (descriptor_ < 0) return true;  // write() reports why there is none
    return ending.waitFor({&room}) == Ending::Awaited::Ready || poll(&room, 1, 0) > 0;
}

bool Output::write(std::string_view text, Ending& ending)
{
    while (!text.empty() && !hasFailed()) {
        if (!waitForRoom(ending)) return false;
        write(text.substr(0, PIPE_BUF));
        text.remove_prefix(std::min<std::size_t>(text.size(), PIPE_BUF));
    }
    return !hasFailed();
}

int Output::result(int code)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return error_ == 0 || error_ == EPIPE ? code : ExitNoOutput;
}

void complain(const std::string& text)
{
    const std::string line = "orvu: " + text + "\n";
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;  // there is nowhere left to say so
}

void note(const std::string& text)
{
    complain(text);
}

}  // namespace OrvuTool
