#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "orvu/OrvuRestInterface.h"

#if defined(__ANDROID__) || defined(ORVU_LOG_ANDROID)
#include <android/log.h>
#else
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <syslog.h>
#include <unistd.h>
#endif

namespace Orvu {
namespace {

constexpr std::size_t kLogBuffer = 4096;

#if defined(__ANDROID__) || defined(ORVU_LOG_ANDROID)

constexpr std::size_t kMarkSize = 0;

bool isWanted()
{
    return true;
}

void writeLine(char* line, std::size_t)
{
    __android_log_print(ANDROID_LOG_INFO, "OrVU", "%s", line);
}

#else

constexpr char kMark[] = "I/OrVU: ";
constexpr std::size_t kMarkSize = sizeof kMark - 1;

enum class Sink { StandardError, Syslog, None };

Sink chosenSink()
{
    const char* const choice = std::getenv("ORVU_LOG");
    if (choice && std::strcmp(choice, "none") == 0) return Sink::None;
    if (choice && std::strcmp(choice, "syslog") == 0) return Sink::Syslog;
    return Sink::StandardError;
}

Sink sink()
{
    static const Sink kSink = chosenSink();
    return kSink;
}

bool isWanted()
{
    return sink() != Sink::None;
}

/// Keeps a log whose reader is gone from ending the process: a write that would raise SIGPIPE only fails.
class NoSigpipe {
public:
    NoSigpipe()
    {
        sigemptyset(&sigpipe_);
        sigaddset(&sigpipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
    }
    ~NoSigpipe()
    {
        if (wasDeliverable()) pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    /// Takes back the signal that a failed write has left for this thread.
    void swallow()
    {
        const timespec atOnce{0, 0};
        if (wasDeliverable()) sigtimedwait(&sigpipe_, nullptr, &atOnce);
    }

private:
    bool wasDeliverable() const { return sigismember(&before_, SIGPIPE) == 0; }

    sigset_t sigpipe_;
    sigset_t before_;
};

void writeToStandardError(const char* bytes, std::size_t size)
{
    NoSigpipe noSigpipe;
    while (size > 0) {
        const ssize_t written = write(STDERR_FILENO, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && errno == EPIPE) noSigpipe.swallow();
        if (written <= 0) return;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

/// `line` begins with room for the mark and has room for a line feed at its end.
void writeLine(char* line, std::size_t size)
{
    if (sink() == Sink::Syslog) return syslog(LOG_INFO, "OrVU: %s", line + kMarkSize);
    std::memcpy(line, kMark, kMarkSize);
    line[size] = '\n';
    writeToStandardError(line, size + 1);
}

#endif

}  // namespace

void OrvuRestInterface::log(const char* format, ...)
{
    if (!isWanted()) return;
    const int reason = errno;
    char line[kMarkSize + kLogBuffer];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line + kMarkSize, kLogBuffer, format, arguments);
    va_end(arguments);
    if (length >= 0) writeLine(line, kMarkSize + std::min<std::size_t>(length, kLogBuffer - 1));
    errno = reason;
}

}  // namespace Orvu
