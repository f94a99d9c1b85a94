#pragma once

#include "base/Mutex.h"

#include <atomic>

namespace quillon {

/// A reader-writer lock in which neither side can starve the other.
///
/// A waiting writer keeps new readers out, and readers in the middle of a search ask
/// isWriterWaiting() and yield. Readers that waited for one writer go before the next writer.
/// std::shared_mutex lets overlapping readers keep a writer out for seconds.
class CAPABILITY("index") IndexLock
{
public:
    IndexLock() = default;
    IndexLock(const IndexLock &) = delete;
    IndexLock &operator=(const IndexLock &) = delete;

    void lock() ACQUIRE() NO_THREAD_SAFETY_ANALYSIS;
    void unlock() RELEASE() NO_THREAD_SAFETY_ANALYSIS;
    void lockShared() ACQUIRE_SHARED() NO_THREAD_SAFETY_ANALYSIS;
    void unlockShared() RELEASE_SHARED() NO_THREAD_SAFETY_ANALYSIS;

    /// Returns true when a reader should yield. It is cheap enough to be called often.
    bool isWriterWaiting() const { return writersWaiting_.load(std::memory_order_relaxed) > 0; }
    /// Lets waiting writers in, then continues to read. What was read before may have changed.
    void yieldShared() REQUIRES_SHARED(this) NO_THREAD_SAFETY_ANALYSIS;

private:
    Mutex mutex_;
    Condition readersMayEnter_;
    Condition writerMayEnter_;
    int readers_ GUARDED_BY(mutex_) = 0;
    int readersWaiting_ GUARDED_BY(mutex_) = 0;
    /// The readers that go before the next writer, because they waited for the last one.
    int readersDue_ GUARDED_BY(mutex_) = 0;
    bool writing_ GUARDED_BY(mutex_) = false;
    std::atomic<int> writersWaiting_ = 0;
};

class SCOPED_CAPABILITY WritingIndex
{
public:
    explicit WritingIndex(IndexLock &lock) ACQUIRE(lock) : lock_(lock) { lock_.lock(); }
    ~WritingIndex() RELEASE() { lock_.unlock(); }
    WritingIndex(const WritingIndex &) = delete;
    WritingIndex &operator=(const WritingIndex &) = delete;

private:
    IndexLock &lock_;
};

class SCOPED_CAPABILITY ReadingIndex
{
public:
    explicit ReadingIndex(IndexLock &lock) ACQUIRE_SHARED(lock) : lock_(lock)
    {
        lock_.lockShared();
    }
    ~ReadingIndex() RELEASE_GENERIC() { lock_.unlockShared(); }
    ReadingIndex(const ReadingIndex &) = delete;
    ReadingIndex &operator=(const ReadingIndex &) = delete;

private:
    IndexLock &lock_;
};

} // namespace quillon
