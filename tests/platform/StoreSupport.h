#pragma once

#include "platform/linux/settings/JsonDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon {

/// A store whose file is in a folder of its own. Neither exists at the start.
class StoreTest : public testing::Test
{
protected:
    static constexpr std::string_view FILE = "config/quillon/quillon.json";

    /// Writes the file in place, as an editor or another program does.
    void writeByHand(std::string_view text) const { folder.writeFile(FILE, text); }
    std::string text() const { return folder.readFile(FILE); }
    ino_t inode() const { return SettingsFile(path).stamp().inode; }
    /// Returns the names beside the file that begin with its name, without the lock, sorted.
    std::vector<std::string> filesBeside() const
    {
        std::vector<std::string> names;
        for (const auto &entry :
             std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()))
            if (const auto name = entry.path().filename().string();
                name.starts_with("quillon.json.") && name != "quillon.json.lock")
                names.push_back(name);
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder folder;
    const std::string path = folder.path(FILE);
};

/// Runs the function in a process of its own, which succeeds when the function returns true, and
/// which ends at the latest with this one.
inline pid_t fork(const std::function<bool()> &function)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::_exit(function() ? 0 : 1);
    }
    return child;
}

inline bool succeeded(pid_t child)
{
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Checks the condition again and again until it holds. Returns false after ten seconds.
inline bool becomesTrue(const std::function<bool()> &condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition())
        if (std::chrono::steady_clock::now() > deadline)
            return false;
    return true;
}

} // namespace quillon
