#include "log/Log.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

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

thread_local bool sigpipeIsBlocked = false;

/// Keeps a log whose reader is gone from ending the process: a write that would raise SIGPIPE only fails.
class NoSigpipe {
public:
    NoSigpipe()
    {
        if (sigpipeIsBlocked) return;
        sigemptyset(&sigpipe_);
        sigaddset(&sigpipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
        wasDeliverable_ = sigismember(&before_, SIGPIPE) == 0;
    }
    ~NoSigpipe()
    {
        if (wasDeliverable_) pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    /// Takes back the signal that a failed write has left for this thread.
    void swallow()
    {
        const timespec atOnce{0, 0};
        if (wasDeliverable_) sigtimedwait(&sigpipe_, nullptr, &atOnce);
    }

private:
    sigset_t sigpipe_;
    sigset_t before_;
    bool wasDeliverable_ = false;
};

/// Not inline, since the stack is deepest before, while the line is formatted.
[[gnu::noinline]] void writeToStandardError(const char* bytes, std::size_t size)
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

bool isLogWanted()
{
    return isWanted();
}

void setSigpipeBlocked(bool isBlocked)
{
#if defined(__ANDROID__) || defined(ORVU_LOG_ANDROID)
    static_cast<void>(isBlocked);  // Android's log raises no signal
#else
    sigpipeIsBlocked = isBlocked;
#endif
}

/// Not inline: the line's room on the stack is used only where lines are wanted.
[[gnu::noinline]] static void writeFormatted(const char* format, va_list arguments)
{
    const int reason = errno;
    char line[kMarkSize + kLogBuffer];
    const int length = std::vsnprintf(line + kMarkSize, kLogBuffer, format, arguments);
    if (length >= 0) writeLine(line, kMarkSize + std::min<std::size_t>(length, kLogBuffer - 1));
    errno = reason;
}

[[gnu::hot]] void logLine(const char* format, ...)
{
    if (!isWanted()) return;
    va_list arguments;
    va_start(arguments, format);
    writeFormatted(format, arguments);
    va_end(arguments);
}

void logLineOf(const char* format, va_list arguments)
{
    if (isWanted()) writeFormatted(format, arguments);
}

}  // namespace Orvu
