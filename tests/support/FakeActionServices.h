#pragma once

#include "actions/ActionRunner.h"
#include "platform/Clipboard.h"
#include "platform/ProcessRunner.h"
#include "platform/RecentItems.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/FakeFolderLister.h"
#include "tests/support/FakeWorkspace.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

class FakeClipboard final : public Clipboard
{
public:
    std::string text;

    void setString(const std::string &newText) override { text = newText; }
};

/// Records which programs should run. A test ends them.
class FakeProcessRunner final : public ProcessRunner
{
public:
    std::vector<Command> commands;
    std::vector<Ended> running;
    /// The reason why nothing starts.
    std::optional<std::string> failure;

    std::optional<std::string> run(const Command &command, Ended ended) override
    {
        commands.push_back(command);
        if (!failure)
            running.push_back(std::move(ended));
        return failure;
    }
};

class FakeRecentItems final : public RecentItems
{
public:
    std::vector<std::string> added;

    void add(const std::string &path) override { added.push_back(path); }
};

/// All the services that actions use.
struct FakeActionServices
{
    FakeWorkspace workspace;
    FakeFileManager fileManager;
    FakeClipboard clipboard;
    FakeProcessRunner processRunner;
    /// This lister is asked about items that could not be opened.
    FakeFolderLister folders;
    FakeRecentItems recentItems;

    ActionRunner::Services services()
    {
        return {workspace, fileManager, clipboard, processRunner, folders, recentItems};
    }
};

} // namespace quillon
