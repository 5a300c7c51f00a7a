#include "support/LogCapture.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <unistd.h>

namespace OrvuTests {

LogCapture::LogCapture()
{
    std::fflush(stderr);
    oldStderr_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (oldStderr_ < 0 || pipe2(pipe_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    dup2(pipe_[1], STDERR_FILENO);
    reader_ = std::thread([this] { read(); });
}

LogCapture::~LogCapture()
{
    std::fflush(stderr);
    dup2(oldStderr_, STDERR_FILENO);
    close(oldStderr_);
    close(pipe_[1]);  // the last writing end of this process: the reader comes to the end
    reader_.join();
    close(pipe_[0]);
}

void LogCapture::read()
{
    char bytes[4096];
    ssize_t size;
    while ((size = ::read(pipe_[0], bytes, sizeof bytes)) > 0) {
        const std::lock_guard<std::mutex> lock(mutex_);
        text_.append(bytes, static_cast<size_t>(size));
        grown_.notify_all();
    }
}

/// Waits until the reader has emptied the pipe: a mark of our own comes through after everything else.
void LogCapture::drain()
{
    static const std::string kMark = "\x01drained\x01\n";
    if (write(pipe_[1], kMark.data(), kMark.size()) != static_cast<ssize_t>(kMark.size())) return;
    std::unique_lock<std::mutex> lock(mutex_);
    size_t at = std::string::npos;
    grown_.wait(lock, [&] { return (at = text_.find(kMark)) != std::string::npos; });
    text_.erase(at, kMark.size());
}

std::vector<std::string> LogCapture::linesLocked() const
{
    static const std::string kTag = "I/OrVU: ";
    std::vector<std::string> lines;
    size_t begin = text_.compare(0, kTag.size(), kTag) == 0 ? 0 : text_.find("\n" + kTag);
    while (begin != std::string::npos && begin < text_.size()) {
        if (text_[begin] == '\n') ++begin;
        size_t end = text_.find("\n" + kTag, begin);  // a line may hold line feeds of its own
        std::string line =
            text_.substr(begin + kTag.size(), end == std::string::npos ? end : end - begin - kTag.size());
        if (end == std::string::npos && !line.empty() && line.back() == '\n') line.pop_back();
        lines.push_back(line);
        begin = end;
    }
    return lines;
}

std::vector<std::string> LogCapture::lines()
{
    drain();
    const std::lock_guard<std::mutex> lock(mutex_);
    return linesLocked();
}

bool LogCapture::waitFor(const std::string& line)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return grown_.wait_for(lock, std::chrono::seconds(30), [&] {
        const std::vector<std::string> all = linesLocked();
        return std::find(all.begin(), all.end(), line) != all.end();
    });
}

int LogCapture::count(const std::string& line)
{
    const std::vector<std::string> all = lines();
    return static_cast<int>(std::count(all.begin(), all.end(), line));
}

void LogCapture::clear()
{
    drain();
    const std::lock_guard<std::mutex> lock(mutex_);
    text_.clear();
}

std::string LogCapture::text()
{
    drain();
    const std::lock_guard<std::mutex> lock(mutex_);
    return text_;
}

}  // namespace OrvuTests
