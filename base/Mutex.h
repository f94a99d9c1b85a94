#pragma once

#include "base/ThreadAnnotations.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace quillon {

/// A std::mutex with the annotations that clang's analysis needs.
class CAPABILITY("mutex") Mutex
{
public:
    Mutex() = default;
    Mutex(const Mutex &) = delete;
    Mutex &operator=(const Mutex &) = delete;

    void lock() ACQUIRE() { mutex_.lock(); }
    void unlock() RELEASE() { mutex_.unlock(); }

private:
    friend class Condition;
    std::mutex mutex_;
};

class SCOPED_CAPABILITY MutexLock
{
public:
    explicit MutexLock(Mutex &mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
    ~MutexLock() RELEASE() { mutex_.unlock(); }
    MutexLock(const MutexLock &) = delete;
    MutexLock &operator=(const MutexLock &) = delete;

private:
    Mutex &mutex_;
};

/// A std::condition_variable for a Mutex. Spurious wake-ups happen, so callers wait in a loop.
class Condition
{
public:
    void wait(Mutex &mutex) REQUIRES(mutex)
    {
        std::unique_lock lock(mutex.mutex_, std::adopt_lock);
        condition_.wait(lock);
        lock.release();
    }
    /// Returns after this time at the latest.
    void waitFor(Mutex &mutex, std::chrono::milliseconds time) REQUIRES(mutex)
    {
        std::unique_lock lock(mutex.mutex_, std::adopt_lock);
        condition_.wait_for(lock, time);
        lock.release();
    }
    void notifyOne() { condition_.notify_one(); }
    void notifyAll() { condition_.notify_all(); }

private:
    std::condition_variable condition_;
};

} // namespace quillon
