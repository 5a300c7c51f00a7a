#pragma once

#include <mutex>
#include <string>
#include <string_view>

namespace OrvuTool {

class Ending;

/// Standard output, kept for what the tool itself says.
///
/// Some of the library's messages print lines of their own. From construction on descriptor 1 leads nowhere, and only
/// write() reaches the standard output that the process was started with. One object per process, never destroyed
/// before the process ends: requests are answered on threads that may outlive main().
class Output {
public:
    Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes all of `text`, in one piece. The first failure ends all writing and is reported on standard error, unless
    /// only the reader has left. Any thread.
    void write(std::string_view text);

    /// The same, but after a signal it writes only what the reader takes at once, so that a reader that stopped reading
    /// cannot delay the end. False when not all was written.
    bool write(std::string_view text, Ending& ending);

    /// The descriptor of the standard output, for poll(); below 0 when there is none.
    int descriptor() const { return descriptor_; }

    /// The exit code of the process: `code`, or ExitNoOutput when something could not be written.
    int result(int code);

private:
    bool hasFailed();
    bool waitForRoom(Ending& ending) const;
    bool writeSome(std::string_view& text);

    std::mutex mutex_;
    int descriptor_;  // the standard output; -1 when the process was started without
    int error_ = 0;   // the first failure; nothing is written afterwards
};

/// Writes "orvu: `text`" and a line feed to standard error.
void complain(const std::string& text);

/// The same, for a line that is not an error.
void note(const std::string& text);

}  // namespace OrvuTool
