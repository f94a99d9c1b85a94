#include "matching/IndexLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace quillon {
namespace {

TEST(IndexLock, letsNeitherSideStarve)
{
    IndexLock lock;
    std::atomic<bool> writersDone = false;
    std::atomic<int> reads = 0;
    int guarded = 0;
    std::vector<std::jthread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            // The readers always overlap, and each one yields when asked to.
            const ReadingIndex reading(lock);
            while (!writersDone) {
                if (lock.isWriterWaiting())
                    lock.yieldShared();
                EXPECT_EQ(guarded % 2, 0);
                ++reads;
            }
        });
    }
    {
        std::vector<std::jthread> writers;
        for (int i = 0; i < 2; ++i) {
            writers.emplace_back([&] {
                for (int k = 0; k < 500; ++k) {
                    const WritingIndex writing(lock);
                    ++guarded;
                    ++guarded;
                }
            });
        }
    }
    writersDone = true;
    readers.clear();
    EXPECT_EQ(guarded, 2000);
    EXPECT_GT(reads, 0);
}

} // namespace
} // namespace quillon
