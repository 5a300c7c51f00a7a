#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace OrvuTests {

/// How a process ended, and all that it wrote.
struct Ended {
    int code;  ///< The exit code, or 128 plus the signal that ended it.
    std::string out;
    std::string err;
};

struct ProcessOptions {
    std::string input;                     ///< Its standard input.
    std::vector<std::string> environment;  ///< "NAME=value", beside what this process has.
    bool outputGone = false;               ///< Its standard output has no reader: writing there fails with EPIPE.
};

/// A program that runs beside the test. Its signals are the default ones, whatever this process does with its own.
class Process {
public:
    /// Starts `command`, found as a shell finds it. Throws std::runtime_error when it cannot be started.
    explicit Process(const std::vector<std::string>& command, const ProcessOptions& options = {});
    /// Kills it if it still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Waits until its standard output, or error, holds `part`; false when it ended without, or after 30 s.
    bool waitForOutput(const std::string& part) { return out_.waitFor(part); }
    bool waitForError(const std::string& part) { return err_.waitFor(part); }
    std::string out() { return out_.text(); }
    std::string err() { return err_.text(); }

    void signal(int number);

    /// Waits until it has ended. One that has not after 60 s is killed: the code is 137 then.
    Ended wait();

private:
    /// What comes through a pipe, collected while it comes.
    class Stream {
    public:
        Stream();
        ~Stream();
        int writingEnd() const { return pipe_[1]; }
        void abandon();  ///< Before the process starts: no one will read.
        void start();    ///< Once the process has the writing end, which is closed here.
        bool waitFor(const std::string& part);
        bool waitForEnd();
        std::string text();

    private:
        void read();
        static void closeEnd(int& end);

        int pipe_[2];
        std::thread reader_;
        std::mutex mutex_;
        std::condition_variable changed_;
        std::string text_;
        bool ended_ = false;
    };

    Stream out_;
    Stream err_;
    pid_t pid_ = -1;
    int status_ = 0;
};

/// Runs `command` to its end.
Ended run(const std::vector<std::string>& command, const ProcessOptions& options = {});

}  // namespace OrvuTests
