#include "support/Process.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace OrvuTests {
namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        result.push_back(const_cast<char*>(text.c_str()));
    result.push_back(nullptr);
    return result;
}

std::string nameOf(const std::string& variable)
{
    return variable.substr(0, variable.find('='));
}

std::vector<std::string> environmentWith(const std::vector<std::string>& more)
{
    std::vector<std::string> result = more;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const bool replaced = std::any_of(more.begin(), more.end(),
                                          [&](const std::string& other) { return nameOf(other) == nameOf(*entry); });
        if (!replaced) result.emplace_back(*entry);
    }
    return result;
}

/// A descriptor from which `text` can be read; it never blocks and never raises SIGPIPE here.
int fileWith(const std::string& text)
{
    const int file = memfd_create("input", MFD_CLOEXEC);
    if (file < 0 || write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("no file for the input");
    lseek(file, 0, SEEK_SET);
    return file;
}

pid_t spawn(const std::vector<std::string>& command, const std::vector<std::string>& environment, int in, int out,
            int err)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    pid_t pid = -1;
    const int error = posix_spawnp(&pid, command[0].c_str(), &actions, &attributes, pointers(command).data(),
                                   pointers(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error(command[0] + ": " + std::strerror(error));
    return pid;
}

}  // namespace

Process::Stream::Stream()
{
    if (pipe2(pipe_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

Process::Stream::~Stream()
{
    closeEnd(pipe_[1]);
    if (reader_.joinable()) reader_.join();
    closeEnd(pipe_[0]);
}

void Process::Stream::closeEnd(int& end)
{
    if (end >= 0) close(end);
    end = -1;
}

void Process::Stream::abandon()
{
    closeEnd(pipe_[0]);
    ended_ = true;
}

void Process::Stream::start()
{
    closeEnd(pipe_[1]);
    if (pipe_[0] >= 0) reader_ = std::thread([this] { read(); });
}

void Process::Stream::read()
{
    char bytes[65536];
    ssize_t size;
    while ((size = ::read(pipe_[0], bytes, sizeof bytes)) > 0) {
        const std::lock_guard<std::mutex> lock(mutex_);
        text_.append(bytes, static_cast<size_t>(size));
        changed_.notify_all();
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    ended_ = true;
    changed_.notify_all();
}

bool Process::Stream::waitFor(const std::string& part)
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(30), [&] { return ended_ || text_.find(part) != std::string::npos; });
    return text_.find(part) != std::string::npos;
}

bool Process::Stream::waitForEnd()
{
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(60), [&] { return ended_; });
}

std::string Process::Stream::text()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return text_;
}

Process::Process(const std::vector<std::string>& command, const ProcessOptions& options)
{
    if (options.outputGone) out_.abandon();
    const int input = fileWith(options.input);
    pid_ = spawn(command, environmentWith(options.environment), input, out_.writingEnd(), err_.writingEnd());
    close(input);
    out_.start();
    err_.start();
}

Process::~Process()
{
    if (pid_ < 0) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

void Process::signal(int number)
{
    kill(pid_, number);
}

Ended Process::wait()
{
    if (pid_ >= 0) {
        if (!out_.waitForEnd() || !err_.waitForEnd()) kill(pid_, SIGKILL);
        waitpid(pid_, &status_, 0);
        pid_ = -1;
    }
    const int code = WIFEXITED(status_) ? WEXITSTATUS(status_) : 128 + WTERMSIG(status_);
    return {code, out(), err()};
}

Ended run(const std::vector<std::string>& command, const ProcessOptions& options)
{
    return Process(command, options).wait();
}

}  // namespace OrvuTests
