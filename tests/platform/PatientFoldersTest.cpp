#include "platform/linux/disk/PatientFolders.h"

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
    BoundedCalls calls(60s);
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int first = 0; first < 4; ++first)
            threads.emplace_back([&, first] {
                for (int i = first; i < 2000; i += 4)
                    wrong += calls.run([i] { return std::to_string(i); }) != std::to_string(i);
            });
    }
    EXPECT_EQ(wrong, 0);
}

TEST(BoundedCalls, leaveACallBehindThatDoesNotReturn)
{
    const auto released = std::make_shared<std::counting_semaphore<2>>(0);
    const auto ended = std::make_shared<std::counting_semaphore<2>>(0);
    {
        BoundedCalls calls(20ms);
        const auto hang = [released, ended] {
            released->acquire();
            ended->release();
            return 1;
        };
        EXPECT_EQ(calls.run(hang), std::nullopt);
        BoundedCalls others(60s);
        EXPECT_EQ(others.run(hang, 20ms), std::nullopt) << "this call has less time";
        EXPECT_EQ(others.run([] { return 2; }), 2);
        EXPECT_EQ(others.run([] { return 3; }, 0ms), std::nullopt);
    }
    released->release(2);
    ended->acquire();
    ended->acquire();
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

TEST(PatientFolderLister, knowsNothingOfAFolderThatDoesNotAnswer)
{
    HangingLister folders;
    PatientFolderLister patient(folders, 60s);
    EXPECT_EQ(patient.kind("/here"), FolderLister::Kind::folder);
    EXPECT_EQ(patient.kind("/gone"), FolderLister::Kind::nothing);
    PatientFolderLister impatient(folders, 20ms);
    EXPECT_EQ(impatient.kind("/dead"), FolderLister::Kind::unknown);
    folders.released.release();
    folders.left.acquire();
}

} // namespace

} // namespace quillon
