#include "platform/linux/disk/BoundedFolders.h"

#include "tests/support/WithoutThreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;

TEST(BoundedCalls, bringResultsBackToTheThreadsThatAskedForThem)
{
    BoundedCalls calls;
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int first = 0; first < 4; ++first)
            threads.emplace_back([&, first] {
                for (int i = first; i < 2000; i += 4)
                    wrong +=
                        calls.run("/", 60s, [i] { return std::to_string(i); }) != std::to_string(i);
            });
    }
    EXPECT_EQ(wrong, 0);
}

/// A call that does not return until it is released.
struct Hang
{
    int operator()() const
    {
        released->acquire();
        return 1;
    }
    std::shared_ptr<std::counting_semaphore<>> released =
        std::make_shared<std::counting_semaphore<>>(0);
};

TEST(BoundedCalls, askADiskThatDidNotAnswerAgainOnlyAfterAWhile)
{
    std::atomic<BoundedCalls::Clock::time_point> now{};
    BoundedCalls calls({.diskOf = [](const std::string &) { return std::string("/net"); },
                        .now = [&now] { return now.load(); }});
    const Hang hang;
    EXPECT_EQ(calls.run("/net/a/b", 20ms, hang), std::nullopt);
    std::atomic<int> asked = 0;
    const auto answer = [&asked] { return ++asked; };
    for (const char *path : {"/net", "/net/c"})
        EXPECT_EQ(calls.run(path, 60s, answer), std::nullopt) << path;
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(calls.run("/", 0ms, answer), std::nullopt) << "there is no time to ask";
    for (const char *path : {"/", "/network/x"})
        EXPECT_TRUE(calls.run(path, 60s, answer)) << path;
    now = now.load() + 60s;
    EXPECT_EQ(calls.run("/net/c", 60s, answer), 3);

    // The call returns after all, so the disk answers again.
    EXPECT_EQ(calls.run("/net/a", 20ms, hang), std::nullopt);
    EXPECT_EQ(calls.run("/net/c", 60s, answer), std::nullopt);
    hang.released->release(2);
    while (!calls.run("/net/c", 60s, answer))
        std::this_thread::yield();
}

TEST(BoundedCalls, leaveNoMoreThanSomeCallsBehind)
{
    const Hang hang;
    const Hang later;
    {
        BoundedCalls calls({.mostLeftBehind = 2});
        EXPECT_EQ(calls.run("/a", 20ms, hang), std::nullopt);
        EXPECT_EQ(calls.run("/b", 20ms, hang), std::nullopt);
        EXPECT_EQ(calls.run("/c", 60s, [] { return 1; }), std::nullopt);
        hang.released->release(2);
        while (!calls.run("/c", 60s, [] { return 1; }))
            std::this_thread::yield();
        EXPECT_EQ(calls.run("/d", 20ms, later), std::nullopt);
    }
    later.released->release();
}

TEST(BoundedCalls, areMadeOnTheCallersThreadWhereThereIsNoOther)
{
    EXPECT_TRUE(holdsWithoutThreads([] {
        BoundedCalls calls;
        return calls.run("/", 60s, [] { return std::this_thread::get_id(); }) ==
               std::this_thread::get_id();
    }));
}

/// Hangs on "/dead" until it is released, and then answers.
class HangingLister final : public FolderLister
{
public:
    std::unique_ptr<OpenFolder> open(const std::string &, Wanted, std::error_code &) override
    {
        return nullptr;
    }
    Kind kind(const std::string &path) override
    {
        if (path != "/dead")
            return path == "/here" ? Kind::folder : Kind::nothing;
        released.acquire();
        left.release();
        return Kind::folder;
    }
    std::binary_semaphore released{0};
    std::binary_semaphore left{0};
};

TEST(BoundedFolderLister, knowsNothingOfAFolderThatDoesNotAnswer)
{
    HangingLister folders;
    BoundedCalls calls;
    BoundedFolderLister patient(folders, calls, 60s);
    EXPECT_EQ(patient.kind("/here"), FolderLister::Kind::folder);
    EXPECT_EQ(patient.kind("/gone"), FolderLister::Kind::nothing);
    BoundedFolderLister impatient(folders, calls, 20ms);
    EXPECT_EQ(impatient.kind("/dead"), FolderLister::Kind::unknown);
    folders.released.release();
    folders.left.acquire();
}

TEST(RemoteDisk, isTheNearestMountOrThePathItself)
{
    EXPECT_EQ(remoteDiskOf("/usr/bin"), "/usr/bin");
    EXPECT_EQ(remoteDiskOf("/"), "/");
}

} // namespace

} // namespace quillon
