#include "matching/IndexLock.h"

namespace quillon {

void IndexLock::lock()
{
    const MutexLock guard(mutex_);
    writersWaiting_.fetch_add(1, std::memory_order_relaxed);
    while (writing_ || readers_ > 0 || readersDue_ > 0)
        writerMayEnter_.wait(mutex_);
    writersWaiting_.fetch_sub(1, std::memory_order_relaxed);
    writing_ = true;
}

void IndexLock::unlock()
{
    {
        const MutexLock guard(mutex_);
        writing_ = false;
        readersDue_ = readersWaiting_;
    }
    readersMayEnter_.notifyAll();
    writerMayEnter_.notifyOne();
}

void IndexLock::lockShared()
{
    const MutexLock guard(mutex_);
    ++readersWaiting_;
    while (writing_ || (isWriterWaiting() && readersDue_ == 0))
        readersMayEnter_.wait(mutex_);
    --readersWaiting_;
    if (readersDue_ > 0)
        --readersDue_;
    ++readers_;
}

void IndexLock::unlockShared()
{
    {
        const MutexLock guard(mutex_);
        if (--readers_ > 0)
            return;
    }
    writerMayEnter_.notifyOne();
}

void IndexLock::yieldShared()
{
    unlockShared();
    lockShared();
}

} // namespace quillon
