#include "ctl/CommandLine.h"

#include "base/PathText.h"
#include "ctl/CommandOptions.h"
#include "ctl/CrawlCommand.h"
#include "ctl/FindCommand.h"
#include "ctl/MatchCommand.h"
#include "ctl/OpenPathsCommand.h"
#include "ctl/Output.h"
#include "ctl/PickCommand.h"
#include "ctl/ShellInit.h"
#include "ctl/StatusCommand.h"
#include "ctl/UseCommand.h"
#include "ctl/WatchCommand.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

using Chosen = std::function<int(Output &)>;

/// More threads than this do not make a crawl faster.
constexpr std::size_t MOST_THREADS = 64;

std::chrono::milliseconds wholeMilliseconds(double seconds)
{
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

void addMatch(CLI::App &app, MatchCommand &match, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("match", "Rank the paths on standard input");
    command->add_option("QUERY", match.query, "What to look for")->required()->type_name("");
    addNumber(*command, "-n,--top", match.top, {}, "Print at most N paths (25)");
    addOrder(
        *command, [&](const std::string &name) { match.order = *matchOrderNamed(name); },
        "Rank by the whole \"path\", or \"names\" first (path)");
    command->add_flag("--words", match.inAnyOrder,
                      "Then print what has the words in any order, accents aside");
    command->add_option("--counts", match.countsFile, "JSON object, path to use count")
        ->type_name("FILE");
    addNumber(*command, "--repeat", match.repeat, {.least = 1}, "Run the query N times (1)");
    command->add_flag("-0", match.format.nulSeparated,
                      "Paths and answers end with NUL, not a line feed");
    command->add_flag("--scores", match.format.scores,
                      "Print score, path and marked ranges, separated by tabs");
    command->add_flag("--json", match.format.json, "Print one array of objects");
    command->add_flag("--stats", match.stats, "Print size and times to standard error");
    command->final_callback([&] { chosen = [&](Output &output) { return match.run(output); }; });
}

void addFind(CLI::App &app, int argc, FindCommand &find, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("find", "Search folders");
    addTexts(*command, argc, "QUERY", find.words,
             "What to look for; several words are joined by blanks")
        ->required();
    // Each option takes one folder, since the library would split a list at its commas.
    command
        ->add_option(
            "--in", find.folders,
            "Crawl this folder; may be repeated (the configured ones, else the home folder)")
        ->type_name("DIR")
        ->allow_extra_args(false);
    command->add_flag("--hidden", find.withHidden, "Crawl hidden folders, too")->needs("--in");
    addNumber(*command, "-n,--top", find.top, {}, "Print at most N paths (25)");
    addOrder(
        *command, [&](const std::string &name) { find.order = name; },
        "Rank by the whole \"path\", or \"names\" first (as the settings say)");
    command->add_flag_callback(
        "--no-words", [&] { find.inAnyOrder = false; }, "Print only what matches as typed");
    command->add_flag("-0", find.format.nulSeparated, "End each path with NUL, not a line feed");
    command->add_flag("--json", find.format.json, "Print one array of objects");
    command->add_flag("--relative", find.format.relative,
                      "Print paths as they lead from the working directory");
    command->add_flag("--crawl", find.crawl, "Ask the disk, not an index");
    command->add_flag("--stats", find.stats, "Say on standard error what has answered");
    command->final_callback([&] { chosen = [&](Output &output) { return find.run(output); }; });
}

void addCrawl(CLI::App &app, int argc, CrawlCommand &crawl, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("crawl", "Print what would be indexed");
    const auto addOption = [&](const char *option, std::vector<std::string> &texts,
                               const char *type, const char *help) {
        command->add_option(option, texts, help)->type_name(type)->allow_extra_args(false);
    };
    addOption("--exclude", crawl.excludes, "PATTERN", "Skip folders with this in their path");
    command->add_flag("--no-default-excludes", crawl.noDefaultExcludes,
                      "Without the patterns that a user begins with");
    command->add_flag("--no-builtin-excludes", crawl.noBuiltInExcludes,
                      "Without the patterns that always hold");
    addOption("--ext", crawl.extensions, "EXT",
              "Print files with this extension, without its dot, too");
    addNumber(*command, "--threads", crawl.threads, {.least = 1, .most = MOST_THREADS},
              "Share the work between N threads (2)");
    command->add_flag("--hidden", crawl.withHidden, "Hidden folders, too");
    command->add_flag("-0", crawl.nulSeparated, "End each path with NUL, not a line feed");
    command->add_flag("--stats", crawl.stats, "Print numbers to standard error");
    addTexts(*command, argc, "DIR", crawl.folders, "Folder to crawl; may be repeated")->required();
    command->final_callback([&] { chosen = [&](Output &output) { return crawl.run(output); }; });
}

void addWatch(CLI::App &app, int argc, WatchCommand &watch, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("watch", "Print what comes and goes in folders");
    addSeconds(
        *command, "--latency", [&](double seconds) { watch.latency = seconds; },
        "From a change to its report (10)");
    addSeconds(
        *command, "--window", [&](double seconds) { watch.window = wholeMilliseconds(seconds); },
        "From a report to the update (3)");
    addSeconds(
        *command, "--sweep", [&](double seconds) { watch.sweep = wholeMilliseconds(seconds); },
        "Between looks at folders that are not watched (60)");
    addNumber(*command, "--budget", watch.budget, {}, "Watch at most N folders (half the limit)");
    command->add_flag("--hidden", watch.withHidden, "Hidden folders, too");
    command->add_flag("--dump", watch.dumps,
                      "Print the index when standard input asks, not the changes");
    command->add_flag("-0", watch.nulSeparated, "As --dump, and each path ends with NUL");
    addTexts(*command, argc, "DIR", watch.folders, "Folder to watch; may be repeated")->required();
    command->final_callback([&] { chosen = [&](Output &output) { return watch.run(output); }; });
}

void addStatus(CLI::App &app, StatusCommand &status, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("status", "Print the state of the running Quillon");
    command->add_flag("--json", status.json, "Print one object");
    command->final_callback([&] { chosen = [&](Output &output) { return status.run(output); }; });
}

void addPick(CLI::App &app, int argc, PickCommand &pick, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("pick", "Choose a folder in the terminal");
    addTexts(*command, argc, "QUERY", pick.words,
             "What to look for at first; several words are joined by blanks");
    addNumber(*command, "--height", pick.height, {.least = 2},
              "Use N lines below the cursor (the whole screen)");
    command->add_flag("--best", pick.best, "Do not ask when it is clear which one is meant");
    command->add_flag("-0", pick.nulSeparated, "End the path with NUL, not a line feed");
    command->final_callback([&] { chosen = [&](Output &output) { return pick.run(output); }; });
}

void addOpen(CLI::App &app, int argc, OpenPathsCommand &open, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("open", "Open folders as Return in the panel does");
    addTexts(*command, argc, "PATH", open.paths, "Folder to open; may be repeated")->required();
    command->final_callback([&] { chosen = [&](Output &) { return open.run(); }; });
}

void addUse(CLI::App &app, int argc, UseCommand &use, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("use", "Count that paths were opened");
    addTexts(*command, argc, "PATH", use.paths, "Path that was opened; may be repeated")
        ->required();
    command->final_callback([&] { chosen = [&](Output &) { return use.run(); }; });
}

void addInit(CLI::App &app, std::string &code, Chosen &chosen)
{
    CLI::App *command = app.add_subcommand("init", "Print what a shell reads at its start");
    const auto read = [&code](const std::string &shell) {
        const auto found = shellInit(shell);
        if (!found)
            throw CLI::ValidationError("SHELL", "not \"bash\", \"zsh\" or \"fish\": " + shell);
        code = *found;
    };
    command->add_option_function<std::string>("SHELL", read, "bash, zsh or fish")
        ->required()
        ->type_name("");
    command->final_callback([&] {
        chosen = [&](Output &output) {
            output.write(code);
            return output.finish() ? SUCCESS : FAILURE;
        };
    });
}

bool isCommand(const CLI::App &app, std::string_view name)
{
    const auto isNamed = [name](const CLI::App *command) { return command->get_name() == name; };
    return !app.get_subcommands(isNamed).empty();
}

} // namespace

std::string absolutePath(const std::string &name)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path typed(name);
    // If there are links in the path, only the disk knows where ".." leads.
    const bool leadsUp = std::ranges::find(typed, fs::path("..")) != typed.end();
    fs::path path = leadsUp ? fs::canonical(typed, error) : fs::absolute(typed, error);
    if (error)
        return name;
    const std::string text = path.lexically_normal().string();
    return std::string(withoutTrailingSlashes(text));
}

int runCommandLine(int argc, const char *const *argv, Output &output)
{
    CLI::App app("Searches folders by name, without a window.", "quillonctl");
    app.require_subcommand(1);
    app.set_version_flag("--version", "quillonctl " QUILLON_VERSION, "Print the version and exit");
    app.formatter(usageFormatter());
    Chosen chosen;
    MatchCommand match;
    FindCommand find;
    addMatch(app, match, chosen);
    CrawlCommand crawl;
    WatchCommand watch;
    StatusCommand status;
    addFind(app, argc, find, chosen);
    addCrawl(app, argc, crawl, chosen);
    addWatch(app, argc, watch, chosen);
    addStatus(app, status, chosen);
    PickCommand pick;
    OpenPathsCommand open;
    UseCommand use;
    std::string code;
    addPick(app, argc, pick, chosen);
    addOpen(app, argc, open, chosen);
    addUse(app, argc, use, chosen);
    addInit(app, code, chosen);
    if (argc > 1 && argv[1][0] != '-' && !isCommand(app, argv[1])) {
        complain(unknownCommand(app, argv[1]));
        return USAGE_ERROR;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &request) {
        return app.exit(request);
    } catch (const CLI::ParseError &error) {
        std::string line = error.what();
        std::ranges::replace(line, '\n', ' ');
        complain(line);
        return USAGE_ERROR;
    }
    return chosen(output);
}

} // namespace quillon
