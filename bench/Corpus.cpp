#include "bench/Corpus.h"

#include <array>
#include <cstdint>
#include <span>

namespace quillon::bench {

namespace {

/// SplitMix64 (Steele, Lea and Flood, 2014): the same numbers everywhere.
class Random
{
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next()
    {
        state_ += 0x9e3779b97f4a7c15;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
    std::size_t between(std::size_t least, std::size_t most)
    {
        return least + below(most - least + 1);
    }

private:
    std::uint64_t state_;
};

using Words = std::span<const std::string_view>;

constexpr std::array<std::string_view, 64> NOUNS = {
    "harbour", "invoice",  "ledger",   "garden",  "engine",  "signal",    "parser",  "render",
    "cache",   "archive",  "beacon",   "canvas",  "kernel",  "lantern",   "meadow",  "network",
    "orchard", "packet",   "quarry",   "report",  "schema",  "travel",    "update",  "vector",
    "window",  "yield",    "budget",   "client",  "design",  "export",    "folder",  "graph",
    "history", "index",    "journal",  "keyring", "layout",  "matrix",    "notes",   "output",
    "plans",   "query",    "router",   "search",  "theme",   "upload",    "viewer",  "worker",
    "account", "bridge",   "compiler", "driver",  "editor",  "filter",    "gateway", "handler",
    "insight", "launcher", "monitor",  "planner", "runtime", "scheduler", "tracker", "validator"};
constexpr std::array<std::string_view, 32> ADJECTIVES = {
    "amber", "bright", "calm",  "daily", "early",  "fast",   "great",  "hidden",
    "inner", "joint",  "keen",  "local", "modern", "native", "open",   "plain",
    "quick", "remote", "small", "tiny",  "urban",  "vivid",  "wide",   "young",
    "blue",  "cross",  "deep",  "extra", "flat",   "green",  "hollow", "iron"};
constexpr std::array<std::string_view, 32> MODULES = {
    "src",    "include", "lib",     "docs",    "tests",   "utils",     "internal", "core",
    "common", "api",     "assets",  "images",  "scripts", "config",    "fixtures", "components",
    "models", "views",   "plugins", "locale",  "styles",  "templates", "examples", "services",
    "hooks",  "types",   "parsers", "shaders", "vendor",  "build",     "release",  "dist"};
constexpr std::array<std::string_view, 16> LANGUAGES = {"en",    "de", "fr", "es", "pt_BR", "it",
                                                        "ja",    "ko", "nl", "pl", "ru",    "sv",
                                                        "zh_CN", "tr", "uk", "cs"};
constexpr std::array<std::string_view, 24> TOPICS = {
    "Taxes",    "Contracts", "Insurance", "Letters",  "Recipes", "Holiday", "Manuals",   "Research",
    "Teaching", "Meetings",  "Proposals", "Invoices", "House",   "Car",     "School",    "Health",
    "Music",    "Choir",     "Archive",   "Drafts",   "Scans",   "Club",    "Genealogy", "Garden"};
constexpr std::array<std::string_view, 24> PLACES = {
    "Harbour", "Lake",   "Mountain", "Beach",   "Birthday", "Wedding",   "Old Town", "Zoo",
    "Concert", "Island", "Forest",   "Castle",  "Market",   "Snow",      "Regatta",  "Museum",
    "Airport", "River",  "Camping",  "Bicycle", "Autumn",   "Fireworks", "Garden",   "Family"};

class Generator
{
public:
    explicit Generator(std::size_t count) : count_(count) { paths_.reserve(count); }

    std::vector<std::string> run()
    {
        enter("/home", [this] { enter("/alex", [this] { home(); }); });
        return std::move(paths_);
    }

private:
    bool isDone() const { return paths_.size() >= count_; }

    /// Adds the folder below the current one, then what make() adds below it.
    template <typename Make>
    void enter(const std::string &name, const Make &make)
    {
        if (isDone())
            return;
        const std::size_t length = path_.size();
        path_ += name;
        paths_.push_back(path_);
        make();
        path_.resize(length);
    }
    void leaf(std::string_view name)
    {
        enter("/" + std::string(name), [] {});
    }
    std::string_view pick(Words words) { return words[random_.below(words.size())]; }
    std::string number(std::size_t least, std::size_t most)
    {
        return std::to_string(random_.between(least, most));
    }
    std::string twoDigits(std::size_t n) { return (n < 10 ? "0" : "") + std::to_string(n); }
    std::string capitalised(std::string_view word)
    {
        std::string text(word);
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
        return text;
    }
    std::string projectName()
    {
        const std::string first(pick(ADJECTIVES));
        const std::string second(pick(NOUNS));
        switch (random_.below(5)) {
        case 0:
            return first + "_" + second;
        case 1:
            return capitalised(first) + capitalised(second);
        case 2:
            return second + "." + number(1, 9) + "." + number(0, 20);
        case 3:
            return second + number(1, 400);
        default:
            return first + "-" + second;
        }
    }

    void home()
    {
        enter("/Documents", [this] { documents(); });
        enter("/Pictures", [this] { pictures(); });
        // Projects fill what is left, in rounds, so that every size has all of them.
        for (std::size_t round = 1; !isDone(); ++round) {
            enter("/Projects" + (round == 1 ? "" : " " + std::to_string(round)), [this] {
                for (std::size_t i = 0; i < 120 && !isDone(); ++i)
                    project();
            });
            enter("/Packages" + std::to_string(round), [this] {
                for (std::size_t i = 0; i < 60 && !isDone(); ++i)
                    package();
            });
        }
    }
    void documents()
    {
        for (const std::string_view topic : TOPICS) {
            enter("/" + std::string(topic), [this] {
                for (std::size_t year = 2008; year <= 2026; ++year) {
                    enter("/" + std::to_string(year), [this] {
                        for (std::size_t i = random_.between(4, 40); i > 0; --i)
                            enter("/" + capitalised(pick(NOUNS)) + " & " + capitalised(pick(NOUNS)),
                                  [this] {
                                      for (std::size_t k = random_.below(4); k > 0; --k)
                                          leaf("Letter " + number(1, 99));
                                  });
                    });
                }
            });
        }
    }
    void pictures()
    {
        for (std::size_t year = 2003; year <= 2026; ++year) {
            enter("/" + std::to_string(year), [this, year] {
                for (std::size_t i = random_.between(30, 160); i > 0; --i) {
                    const std::string date = std::to_string(year) + "-" +
                                             twoDigits(random_.between(1, 12)) + "-" +
                                             twoDigits(random_.between(1, 28));
                    enter("/" + date + " " + std::string(pick(PLACES)), [this] {
                        if (random_.below(3) == 0)
                            leaf("selected");
                        if (random_.below(5) == 0)
                            leaf("RAW");
                    });
                }
            });
        }
    }
    void project()
    {
        enter("/" + projectName(), [this] {
            switch (random_.below(3)) {
            case 0:
                enter("/src", [this] {
                    enter("/main", [this] {
                        enter("/java", [this] { enter("/org", [this] { modules(5); }); });
                        enter("/resources", [this] { languages(); });
                    });
                    enter("/test", [this] { modules(3); });
                });
                break;
            case 1:
                enter("/packages", [this] {
                    for (std::size_t i = random_.between(3, 25); i > 0; --i)
                        package();
                });
                break;
            default:
                modules(4);
            }
            leaf("docs");
        });
    }
    void package()
    {
        enter("/" + projectName(), [this] {
            enter("/lib", [this] { modules(3); });
            if (random_.below(4) == 0)
                enter("/locale", [this] { languages(); });
            if (random_.below(3) == 0)
                enter("/dist", [this] {
                    leaf("esm");
                    leaf("cjs");
                    leaf("types");
                });
        });
    }
    void languages()
    {
        for (const std::string_view language : LANGUAGES)
            enter("/" + std::string(language), [this] { leaf("LC_MESSAGES"); });
    }
    void modules(std::size_t depth)
    {
        for (std::size_t i = random_.between(1, 5); i > 0; --i) {
            std::string name(pick(MODULES));
            if (random_.below(3) == 0)
                name = std::string(pick(NOUNS)) + (random_.below(2) == 0 ? "" : "-" + name);
            else if (random_.below(12) == 0)
                name = capitalised(name) + capitalised(pick(NOUNS));
            enter("/" + name, [this, depth] {
                if (depth > 0 && random_.below(10) < 6)
                    modules(depth - 1);
            });
        }
    }

    std::size_t count_;
    Random random_{20240501};
    std::string path_;
    std::vector<std::string> paths_;
};

} // namespace

std::vector<std::string> makeCorpus(std::size_t count)
{
    return Generator(count).run();
}

const std::vector<Needle> &needles()
{
    static const std::vector<Needle> NEEDLES = {
        {"e", "one letter"},
        {"q", "one letter"},
        {"/", "one separator"},
        {"7", "one digit"},
        {"do", "prefix"},
        {"doc", "prefix"},
        {"pic", "prefix"},
        {"har", "prefix"},
        {"val", "prefix"},
        {"docs", "word"},
        {"harbour", "word"},
        {"invoices", "word"},
        {"compiler", "word"},
        {"scheduler", "word"},
        {"locale", "word"},
        {"messages", "word"},
        {"aer", "spread letters"},
        {"sln", "spread letters"},
        {"prjsrc", "spread letters"},
        {"hrbpl", "spread letters"},
        {"quickharbour", "several words"},
        {"harbour plans", "several words"},
        {"taxes 2019", "several words"},
        {"great-engine", "several words"},
        {"2019-07", "date"},
        {"2024 lake", "date"},
        {"src/main", "slashes"},
        {"a/b/c", "slashes"},
        {"/home/alex", "slashes"},
        {"doc/tax/20", "slashes"},
        {"lib/core/api", "slashes"},
        {"Documents", "capitals"},
        {"RAW", "capitals"},
        {"LC", "capitals"},
        {"QuickHarbour", "capitals"},
        {"zoo", "rare"},
        {"qwzx", "rare"},
        {"vividzoo", "rare"},
        {"zzzzqqq", "never"},
        {"@#", "never"},
        {"\xc3\xa4\xc3\xb6", "never"},
        {"/home/alex/Projects/quick-harbour/src/main/java/org", "long"},
        {"projectspackageslibcorecommoninternalapi", "long"},
        {"eeeeee", "each letter frequent"},
        {"aeiou", "each letter frequent"},
        {"s/s/s/s", "each letter frequent"},
        {"erasniterasni", "each letter frequent"},
        {"////////", "each letter frequent"},
    };
    return NEEDLES;
}

} // namespace quillon::bench
