// The program without its windows, its display and its bus, so that tests may let its calls fail
// and may kill it. It uses the settings and the kept index of the environment. Each line of
// standard input is a command, and each answer ends with a dot and a NUL, after texts that end with
// a NUL.

#include "base/SerialTaskQueue.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/RecentAccessScore.h"
#include "platform/linux/applications/GioProcessRunner.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/settings/UserCacheFile.h"
#include "platform/linux/watching/InotifyEventService.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace quillon;
using namespace std::chrono_literals;

constexpr auto PATIENCE = 30s;

/// A queue of the process that drops what a program has posted once that program has ended.
class QueueOfProgram final : public TaskQueue
{
public:
    explicit QueueOfProgram(SerialTaskQueue &queue) : queue_(queue) {}
    void post(Task task) override { postDelayed(0ms, std::move(task)); }
    void postDelayed(std::chrono::milliseconds delay, Task task) override
    {
        queue_.postDelayed(delay, [hasEnded = hasEnded_, task = std::move(task)] {
            if (!*hasEnded)
                task();
        });
    }
    /// Waits for the running task.
    void end()
    {
        queue_.postAndWait([this] { *hasEnded_ = true; });
    }

private:
    SerialTaskQueue &queue_;
    /// Only the queue uses the value.
    const std::shared_ptr<bool> hasEnded_ = std::make_shared<bool>(false);
};

/// The two threads that the application has before any other object.
struct Threads
{
    Threads()
    {
        main.postAndWait([] {});
        background.postAndWait([] {});
    }
    SerialTaskQueue main{"main"};
    SerialTaskQueue background{"background"};
};

/// The objects that the application joins, with the same services as there.
class WindowlessProgram final : SearchBaseBuildObserver
{
public:
    explicit WindowlessProgram(Threads &threads)
        : mainQueue_(threads.main), background_(threads.background)
    {
        builder_.addObserver(*this);
        build();
    }
    ~WindowlessProgram() override
    {
        mainQueue_.postAndWait([this] { builder_.stop(); });
        searchBase_.reset();
        background_.end();
        mainQueue_.end();
        if (!eventQueue_.finish(PATIENCE))
            std::abort();
    }
    WindowlessProgram(const WindowlessProgram &) = delete;
    WindowlessProgram &operator=(const WindowlessProgram &) = delete;

    /// Returns once the index is built and has been kept.
    void build()
    {
        std::promise<void> ended;
        mainQueue_.postAndWait([&] {
            ended_ = &ended;
            builder_.start();
        });
        ended.get_future().wait();
        background_.postAndWait([] {});
    }
    void keep()
    {
        background_.postAndWait([this] { searchBase_.keep(); });
    }
    std::vector<std::string> paths() const { return searchBase_.paths(); }
    std::vector<std::string> settledPaths()
    {
        searchBase_.settle();
        return paths();
    }
    /// Returns whether the setting was stored.
    bool set(std::string_view key, std::int64_t number) { return defaults_.set(key, {number}); }
    std::int64_t setting(std::string_view key) const
    {
        const auto value = defaults_.value(key);
        return value ? value->asInteger().value_or(0) : 0;
    }
    /// Returns whether the use was stored.
    bool use(const std::string &path)
    {
        bool isStored = false;
        mainQueue_.postAndWait([&] {
            isStored = counts_.addRecentAccess(
                SearchBaseResult(path, path, {}, SearchBaseResultType::standard));
        });
        return isStored;
    }
    /// Runs the program as an action does. Returns what it wrote, or why it did not run.
    std::string run(const std::string &script)
    {
        const auto promise = std::make_shared<std::promise<std::string>>();
        const auto failure = runner_.run(
            {.executable = "/bin/sh", .arguments = {"-c", script}},
            [promise](const ProcessRunner::Output &output) {
                promise->set_value(output.isSuccess ? output.standardOutput
                                                    : "failed: " + output.standardError);
            });
        if (failure)
            return "not started: " + *failure;
        auto written = promise->get_future();
        return written.wait_for(PATIENCE) == std::future_status::ready ? written.get() : "silent";
    }

private:
    static InotifyOptions watching()
    {
        InotifyOptions options;
        options.sweepInterval = 200ms;
        return options;
    }
    void buildEnded() override
    {
        if (auto *ended = std::exchange(ended_, nullptr))
            ended->set_value();
    }

    QueueOfProgram mainQueue_;
    QueueOfProgram background_;
    SerialTaskQueue eventQueue_{"events"};
    JsonDefaultsStore defaults_{standardDefaultsPath()};
    BoundedCalls diskCalls_{{.diskOf = remoteDiskOf}};
    LaunchToken token_;
    GioProcessRunner runner_{token_};
    PosixFolderLister diskLister_;
    BoundedFolderLister lister_{diskLister_, diskCalls_};
    InotifyEventService events_{watching()};
    StatxFolderIdentity diskIdentity_;
    BoundedFolderIdentity identity_{diskIdentity_, diskCalls_};
    UserCacheFile keptIndex_{standardIndexPath()};
    DefaultsRecentAccessScoreDataStore countStore_{defaults_};
    RecentAccessScore counts_{countStore_};
    FuzzyMatch matcher_{&counts_};
    SearchBaseFinder finder_{defaults_, identity_, stderr};
    SearchBaseLogger logger_{defaults_, stderr};
    SearchBase searchBase_{nullptr,
                           finder_,
                           matcher_,
                           {.folderLister = lister_,
                            .logger = logger_,
                            .mainQueue = mainQueue_,
                            .watching = {{.events = events_,
                                          .eventQueue = eventQueue_,
                                          .latency = 0.02,
                                          .coalesceDelay = 3ms}},
                            .keptIndex = &keptIndex_}};
    SearchBaseBuilder builder_{{.searchBase = searchBase_,
                                .searchBaseFinder = finder_,
                                .background = background_,
                                .main = mainQueue_}};
    /// The main queue uses it during a build.
    std::promise<void> *ended_ = nullptr;
};

void answer(const std::vector<std::string> &texts)
{
    for (const std::string &text : texts)
        std::fwrite(text.c_str(), 1, text.size() + 1, stdout);
    std::fwrite(".", 1, 2, stdout);
    std::fflush(stdout);
}

std::vector<std::string> obey(std::optional<WindowlessProgram> &program, Threads &threads,
                              const std::string &line)
{
    const std::string word = line.substr(0, line.find(' '));
    const std::string rest = line.substr(std::min(line.size(), word.size() + 1));
    const auto stored = [](bool isStored) {
        return std::vector<std::string>{isStored ? "stored" : "not stored"};
    };
    // The application reads its settings only where they could be read just before.
    if (word == "start" && JsonDefaultsStore(standardDefaultsPath()).fault())
        return {"waits"};
    if (word == "start")
        program.emplace(threads);
    else if (!program)
        return {"not started"};
    else if (word == "stop")
        program.reset();
    else if (word == "build")
        program->build();
    else if (word == "keep")
        program->keep();
    else if (word.empty())
        return program->paths();
    else if (word == "settle")
        return program->settledPaths();
    else if (word == "set")
        return stored(program->set("test-number", std::stoll(rest)));
    else if (word == "setting")
        return {std::to_string(program->setting("test-number"))};
    else if (word == "use")
        return stored(program->use(rest));
    else if (word == "run")
        return {program->run(rest)};
    else
        return {"not understood"};
    return {};
}

} // namespace

int main()
{
    // The programs that are started have no failing calls.
    ::unsetenv("LD_PRELOAD");
    Threads threads;
    std::optional<WindowlessProgram> program;
    for (std::string line; std::getline(std::cin, line);)
        answer(obey(program, threads, line));
    return EXIT_SUCCESS;
}
