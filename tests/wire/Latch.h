#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace OrvuTests {

/// One thread waits at it until another opens it. Throws std::runtime_error after 60 s.
class Latch {
public:
    void open()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        open_ = true;
        opened_.notify_all();
    }
    void wait()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        if (!opened_.wait_for(lock, std::chrono::seconds(60), [this] { return open_; }))
            throw std::runtime_error("nobody opened the latch");
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool open_ = false;
};

}  // namespace OrvuTests
