#include "ctl/WatchCommand.h"

#include "base/InlineTaskQueue.h"
#include "base/SerialTaskQueue.h"
#include "core/SearchBase.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "ctl/ReadOnlySettings.h"
#include "ctl/ReadableFolders.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/watching/InotifyEventService.h"

#include <cstdio>
#include <iostream>

namespace quillon {

namespace {

/// The time for which a disk that does not answer may delay the end of the program.
constexpr std::chrono::seconds TASK_END_TIME(5);

/// Prints the path as one line and at once, since other programs wait for it.
void tell(const std::string &path)
{
    const std::string line = path + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

/// Prints every path, sorted by bytes, and then a dot.
bool print(const SearchBase &searchBase, char end, Output &output)
{
    for (const std::string &path : searchBase.paths()) {
        output.write(path);
        output.write({&end, 1});
    }
    output.write(".");
    output.write({&end, 1});
    return output.finish();
}

} // namespace

int WatchCommand::run(Output &output) const
{
    JsonDefaultsStore user(standardDefaultsPath());
    ReadOnlySettings settings(user);
    const StatxFolderIdentity disk;
    BoundedCalls diskCalls({.diskOf = remoteDiskOf});
    const BoundedFolderIdentity identity(disk, diskCalls);
    SearchBaseFinder finder(settings, identity, stderr);
    bool failed = false;
    settings.includeOnly(readableFolders(folders, identity, failed));

    FuzzyMatch matcher(nullptr);
    PosixFolderLister folderLister;
    BoundedFolderLister lister(folderLister, diskCalls);
    SearchBaseLogger logger(settings, stderr);
    InlineTaskQueue mainQueue;
    SerialTaskQueue eventQueue("org.quillon.Quillon.sbw-fs-events");
    InotifyOptions options;
    options.watchBudget = budget;
    options.sweepInterval = sweep;
    InotifyEventService events(std::move(options));
    SearchBase searchBase(nullptr, finder, matcher,
                          {.folderLister = lister,
                           .logger = logger,
                           .mainQueue = mainQueue,
                           .watching = {{.events = events,
                                         .eventQueue = eventQueue,
                                         .latency = latency,
                                         .coalesceDelay = window}},
                           .onReport = tell});
    searchBase.build([](const std::string &line) {
        if (line.starts_with("Enumerator error "))
            complain(line);
    });
    bool written = true;
    for (std::string line; written && !output.isClosed() && std::getline(std::cin, line);) {
        if (line == "settle")
            searchBase.settle();
        else if (!line.empty())
            complain("watch: not understood: " + line);
        if (line == "settle" || line.empty())
            written = print(searchBase, nulSeparated ? '\0' : '\n', output);
    }
    searchBase.reset();
    eventQueue.finish(TASK_END_TIME);
    return written && !failed ? SUCCESS : FAILURE;
}

} // namespace quillon
