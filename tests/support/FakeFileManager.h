#pragma once

#include "platform/FileManager.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// A file manager with one window, as a test sets it. Safe from every thread once it is set up.
class FakeFileManager final : public FileManager
{
public:
    bool isInFront = false;
    bool isWorking = true;
    std::string desktopId = "fake.desktop";
    /// Another file manager that is installed and not wanted.
    std::string otherDesktopId = "files.desktop";
    std::vector<std::string> items;
    /// If this is set, it returns the items in place of those above.
    std::function<std::vector<std::string>()> giveItems;

    void noteFrontWindow() override { note("note"); }
    bool isFrontmost() const override { return isInFront; }
    std::vector<std::string> frontWindowItems() override
    {
        note("items");
        return giveItems ? giveItems() : items;
    }
    std::string application() const override { return desktopId; }
    std::string standardApplication() const override { return otherDesktopId; }
    bool isFileManager(const std::string &id) const override
    {
        return id == desktopId || id == otherDesktopId;
    }
    bool openNewWindow(const std::string &folder) override { return note("new " + folder); }
    bool openInFrontWindow(const std::string &folder) override { return note("front " + folder); }
    bool select(const std::string &item, const std::string &folder) override
    {
        return note("select " + item + " in " + folder);
    }
    bool showProperties(const std::string &item) override { return note("properties " + item); }
    bool probe() override { return note("probe"); }

    /// Returns and forgets what was asked, in order.
    std::vector<std::string> takeCalls()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(calls_, {});
    }

private:
    bool note(std::string call)
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
        return isWorking;
    }

    std::mutex mutex_;
    std::vector<std::string> calls_;
};

} // namespace quillon
