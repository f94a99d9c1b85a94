#include "ctl/WatchCommand.h"

#include "base/InlineTaskQueue.h"
#include "base/SerialTaskQueue.h"
#include "core/SearchBase.h"
#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "ctl/ReadOnlySettings.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/terminal/ReaderWait.h"
#include "platform/linux/terminal/TerminalText.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "results/RowText.h"

#include <cstdio>
#include <iostream>
#include <latch>
#include <utility>

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

/// Prints the index whenever standard input asks for it. Returns false when output was lost.
bool answerInput(SearchBase &searchBase, char end, Output &output)
{
    bool written = true;
    for (std::string line; written && !output.isClosed() && std::getline(std::cin, line);) {
        if (line == "settle")
            searchBase.settle();
        else if (!line.empty())
            complain("watch: not understood: " + line);
        if (line == "settle" || line.empty())
            written = print(searchBase, end, output);
    }
    return written;
}

/// Prints what comes and goes, once the index is ready.
class ChangePrinter
{
public:
    /// No other thread uses the output until await() has returned and the event queue has ended.
    explicit ChangePrinter(Output &output) : output_(output) {}

    /// Is called on the event queue.
    void print(const IndexDifferences &differences)
    {
        ready_.wait();
        for (const std::string &path : differences.removed)
            printLine("- ", path);
        for (const std::string &path : differences.added)
            printLine("+ ", path);
        isWritten_ = output_.finish() && isWritten_;
        if (!isWritten_ || output_.isClosed())
            reader_.end();
    }

    /// Lets the changes be printed. Returns when there is nobody to read them.
    void await()
    {
        ready_.count_down();
        reader_.await();
    }
    /// Returns false when output was lost. Is called when the event queue has ended.
    bool isWritten() const { return isWritten_; }

private:
    void printLine(std::string_view sign, const std::string &path)
    {
        output_.write(sign);
        output_.write(isForPeople_ ? displayText(path).toStdString() : path);
        output_.write("\n");
    }

    Output &output_;
    const bool isForPeople_ = isTerminal(stdout);
    const ReaderWait reader_{stdout};
    std::latch ready_{1};
    bool isWritten_ = true;
};

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
    const std::vector<std::string> readable = readableFolders(folders, identity, failed);
    const bool dumpsIndex = dumps || nulSeparated;
    if (readable.empty() && !dumpsIndex)
        return FAILURE;
    settings.includeOnly(readable, withHidden);

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
    SearchBase::Services services{.folderLister = lister,
                                  .logger = logger,
                                  .mainQueue = mainQueue,
                                  .watching = {{.events = events,
                                                .eventQueue = eventQueue,
                                                .latency = latency,
                                                .coalesceDelay = window}}};
    ChangePrinter changes(output);
    if (dumpsIndex)
        services.onReport = tell;
    else
        services.onDifferences = [&changes](const auto &each) { changes.print(each); };
    SearchBase searchBase(nullptr, finder, matcher, std::move(services));
    searchBase.build([](const std::string &line) {
        if (line.starts_with("Enumerator error "))
            complain(line);
    });
    bool written = true;
    if (dumpsIndex) {
        written = answerInput(searchBase, nulSeparated ? '\0' : '\n', output);
    } else {
        complain("the index is ready: " + std::to_string(searchBase.count()) +
                 " folders and files");
        changes.await();
    }
    searchBase.reset();
    eventQueue.finish(TASK_END_TIME);
    return written && changes.isWritten() && !failed ? SUCCESS : FAILURE;
}

} // namespace quillon
