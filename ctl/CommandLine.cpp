#include "ctl/CommandLine.h"

#include "base/EditDistance.h"
#include "base/PathText.h"
#include "ctl/CrawlCommand.h"
#include "ctl/FindCommand.h"
#include "ctl/MatchCommand.h"
#include "ctl/Output.h"
#include "ctl/StatusCommand.h"
#include "ctl/WatchCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

struct Range
{
    std::size_t least = 0;
    std::size_t most = std::numeric_limits<std::size_t>::max();

    bool holds(std::size_t number) const { return least <= number && number <= most; }
    std::string description() const
    {
        const bool isOpen = most == Range{}.most;
        return isOpen ? "of " + std::to_string(least) + " or more"
                      : "from " + std::to_string(least) + " to " + std::to_string(most);
    }
};

/// More threads than this do not make a crawl faster.
constexpr std::size_t MOST_THREADS = 64;

/// Adds an option that is a whole number. The library's own reading accepts hexadecimal digits and
/// lets numbers wrap round.
template <typename Number>
void addNumber(CLI::App &command, const std::string &option, Number &value, const Range &range,
               const std::string &help)
{
    const auto read = [&value, range, option](const std::string &text) {
        std::size_t number = 0;
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, number);
        if (error != std::errc() || rest != end || !range.holds(number))
            throw CLI::ValidationError(option,
                                       "not a whole number " + range.description() + ": " + text);
        value = number;
    };
    command.add_option_function<std::string>(option, read, help)->type_name("N");
}

/// Adds an option that is a time of zero seconds or more, up to days.
void addSeconds(CLI::App &command, const std::string &option,
                const std::function<void(double seconds)> &set, const std::string &help)
{
    const auto read = [set, option](const std::string &text) {
        double seconds = 0;
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, seconds);
        constexpr double MOST = 1e6;
        if (error != std::errc() || rest != end || !(seconds >= 0 && seconds <= MOST))
            throw CLI::ValidationError(option, "not a time in seconds: " + text);
        set(seconds);
    };
    command.add_option_function<std::string>(option, read, help)->type_name("S");
}

/// Adds the option that names the order of the answers.
void addOrder(CLI::App &command, const std::function<void(const std::string &name)> &set,
              const std::string &help)
{
    const auto read = [set](const std::string &text) {
        if (!matchOrderNamed(text))
            throw CLI::ValidationError("--order", "not an order, \"path\" or \"names\": " + text);
        set(text);
    };
    command.add_option_function<std::string>("--order", read, help)->type_name("ORDER");
}

std::chrono::milliseconds wholeMilliseconds(double seconds)
{
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

/// Adds one place for each argument that there can be, since the library would split a folder named
/// "[a,b]" in a list.
void addTexts(CLI::App &command, int argc, const std::string &name, std::vector<std::string> &texts,
              const std::string &help)
{
    const auto take = [&texts](const std::string &text) { texts.push_back(text); };
    command.add_option_function<std::string>(name, take, help)->required()->type_name("");
    for (int i = 1; i < argc; ++i)
        command.add_option_function<std::string>(name + std::to_string(i), take)->group("");
}

/// Leaves options without a group out of the usage line, as the list of options does.
class Formatter final : public CLI::Formatter
{
public:
    std::string make_option_usage( // NOLINT(readability-identifier-naming): the library's name
        const CLI::Option *option) const override
    {
        return option->get_group().empty() ? "" : CLI::Formatter::make_option_usage(option);
    }
};

void addMatch(CLI::App &app, MatchCommand &match, std::function<int(Output &)> &chosen)
{
    CLI::App *command = app.add_subcommand("match", "Rank the paths on standard input");
    command->add_option("QUERY", match.query, "What to look for")->required()->type_name("");
    addNumber(*command, "--top", match.top, {}, "Print at most N paths (25)");
    addOrder(
        *command, [&](const std::string &name) { match.order = *matchOrderNamed(name); },
        "Rank by the whole \"path\", or \"names\" first (path)");
    command->add_flag("--words,!--no-words", match.inAnyOrder,
                      "Then print what has the words in any order, accents aside");
    command->add_option("--counts", match.countsFile, "JSON object, path to use count")
        ->type_name("FILE");
    addNumber(*command, "--repeat", match.repeat, {.least = 1}, "Run the query N times (1)");
    command->add_flag("-0", match.nulSeparated, "Paths and answers end with NUL, not a line feed");
    command->add_flag("--stats", match.stats, "Print size and times to standard error");
    command->final_callback([&] { chosen = [&](Output &output) { return match.run(output); }; });
}

void addFind(CLI::App &app, int argc, FindCommand &find, std::function<int(Output &)> &chosen)
{
    CLI::App *command = app.add_subcommand("find", "Search folders");
    addTexts(*command, argc, "QUERY", find.words,
             "What to look for; several words are joined by blanks");
    // Each option takes one folder, since the library would split a list at its commas.
    command
        ->add_option(
            "--in", find.folders,
            "Crawl this folder; may be repeated (the configured ones, else the home folder)")
        ->type_name("DIR")
        ->allow_extra_args(false);
    addNumber(*command, "--top", find.top, {}, "Print at most N paths (25)");
    addOrder(
        *command, [&](const std::string &name) { find.order = name; },
        "Rank by the whole \"path\", or \"names\" first (as the settings say)");
    command->add_flag("--words,!--no-words", find.inAnyOrder,
                      "Then print what has the words in any order, accents aside (yes)");
    command->add_flag("-0", find.nulSeparated, "End each path with NUL, not a line feed");
    command->add_flag("--json", find.json, "Print one array of objects");
    command->add_flag("--crawl", find.crawl, "Ask the disk, not an index");
    command->add_flag("--stats", find.stats, "Say on standard error what has answered");
    command->final_callback([&] { chosen = [&](Output &output) { return find.run(output); }; });
}

void addCrawl(CLI::App &app, int argc, CrawlCommand &crawl, std::function<int(Output &)> &chosen)
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
    command->add_flag("-0", crawl.nulSeparated, "End each path with NUL, not a line feed");
    command->add_flag("--stats", crawl.stats, "Print numbers to standard error");
    addTexts(*command, argc, "DIR", crawl.folders, "Folder to crawl; may be repeated");
    command->final_callback([&] { chosen = [&](Output &output) { return crawl.run(output); }; });
}

void addWatch(CLI::App &app, int argc, WatchCommand &watch, std::function<int(Output &)> &chosen)
{
    CLI::App *command = app.add_subcommand("watch", "Keep an index current and print it on demand");
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
    command->add_flag("-0", watch.nulSeparated, "End each path with NUL, not a line feed");
    addTexts(*command, argc, "DIR", watch.folders, "Folder to watch; may be repeated");
    command->final_callback([&] { chosen = [&](Output &output) { return watch.run(output); }; });
}

void addStatus(CLI::App &app, StatusCommand &status, std::function<int(Output &)> &chosen)
{
    CLI::App *command = app.add_subcommand("status", "Print the state of the running Quillon");
    command->add_flag("--json", status.json, "Print one object");
    command->final_callback([&] { chosen = [&](Output &output) { return status.run(output); }; });
}

bool isCommand(const CLI::App &app, std::string_view name)
{
    const auto isNamed = [name](const CLI::App *command) { return command->get_name() == name; };
    return !app.get_subcommands(isNamed).empty();
}

/// Returns the message for a word that is no command. It names the command that was probably meant,
/// or else all commands.
std::string unknownCommand(const CLI::App &app, const std::string &typed)
{
    std::string all;
    std::string nearest;
    // If more than half of the letters are wrong, the user meant another word.
    std::size_t fewest = typed.size() / 2 + 1;
    for (const CLI::App *command : app.get_subcommands({})) {
        const std::string &name = command->get_name();
        all.append(all.empty() ? "" : ", ").append(name);
        const std::size_t edits = editDistance(typed, name);
        if (edits < fewest) {
            fewest = edits;
            nearest = name;
        }
    }
    const std::string hint =
        nearest.empty() ? "the commands are " + all : "did you mean \"" + nearest + "\"?";
    std::string line = "there is no command \"" + typed + "\"; " + hint;
    std::ranges::replace(line, '\n', ' ');
    return line;
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
    app.formatter(std::make_shared<Formatter>());
    std::function<int(Output &)> chosen;
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
