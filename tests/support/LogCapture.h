#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace OrvuTests {

/// Takes what this process writes to standard error, line by line, while it lives; the library's log lines among it.
/// Keep it outermost in a test: library threads that outlive it would write to the restored standard error.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// The log lines so far, without the mark "I/OrVU: " before each; everything written before the call is among them.
    std::vector<std::string> lines();
    /// Waits until a log line equals `line`; false after 30 s.
    bool waitFor(const std::string& line);
    /// How many log lines so far equal `line`.
    int count(const std::string& line);
    /// Forgets the lines so far.
    void clear();
    /// Everything written so far, as it came.
    std::string text();

private:
    void read();
    void drain();
    std::vector<std::string> linesLocked() const;

    int oldStderr_;
    int pipe_[2];
    std::mutex mutex_;
    std::condition_variable grown_;
    std::string text_;
    std::thread reader_;
};

}  // namespace OrvuTests
