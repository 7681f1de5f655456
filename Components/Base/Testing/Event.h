// A one-shot event for tests that cross threads: set() on one thread,
// waitFor() on another. The wait has a time limit, so that a broken
// primitive fails its test instead of hanging it; the limit is generous,
// since the machine may be busy.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace testing_support {

class Event {
public:
    void set() {
        const std::lock_guard lock(mutex_);
        set_ = true;
        changed_.notify_all();
    }

    /// Whether the event was set within `limit`.
    bool waitFor(std::chrono::seconds limit = std::chrono::seconds(60)) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [this] { return set_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool set_ = false;
};

} // namespace testing_support
