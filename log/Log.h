#pragma once

#include <cstdarg>

namespace Orvu {

/// Writes one line to the platform log, as OrvuRestInterface::log() does. Any thread.
void logLine(const char* format, ...) __attribute__((format(printf, 1, 2)));
void logLineOf(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));

/// Whether log lines go anywhere; if not, skip the work of making one. Any thread.
bool isLogWanted();

/// Tells the log whether SIGPIPE is blocked in the calling thread for good. Otherwise the log blocks it around each
/// line, so that a log whose reader is gone does not end the process.
void setSigpipeBlocked(bool isBlocked);

}  // namespace Orvu
