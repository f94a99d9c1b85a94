#pragma once

#include "platform/ThreadAnnotations.h"

#include <mutex>

namespace quillon {

/// std::mutex as the thread-safety analysis knows it.
class CAPABILITY("mutex") Mutex
{
public:
    void lock() ACQUIRE() { mutex_.lock(); }
    void unlock() RELEASE() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

/// Holds a Mutex for the length of a scope.
class SCOPED_CAPABILITY MutexLock
{
public:
    explicit MutexLock(Mutex &mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
    MutexLock(const MutexLock &) = delete;
    MutexLock &operator=(const MutexLock &) = delete;
    ~MutexLock() RELEASE() { mutex_.unlock(); }

private:
    Mutex &mutex_;
};

} // namespace quillon
