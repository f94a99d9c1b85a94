#include "bench/Corpus.h"

#include "bench/CorpusWords.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <span>
#include <string_view>

namespace quillon::bench {

namespace {

using Words = std::span<const std::string_view>;

/// The generator SplitMix64 (Steele, Lea and Flood, 2014), which gives the same numbers everywhere.
class Random
{
public:
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
    std::size_t between(std::size_t least, std::size_t most)
    {
        return least + below(most - least + 1);
    }
    bool isOneIn(std::size_t n) { return below(n) == 0; }
    std::string pick(Words words) { return std::string(words[below(words.size())]); }
    std::string number(std::size_t least, std::size_t most)
    {
        return std::to_string(between(least, most));
    }

private:
    std::uint64_t next()
    {
        state_ += 0x9e3779b97f4a7c15;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }

    std::uint64_t state_ = 20240501;
};

std::string twoDigits(std::size_t n)
{
    return std::string(n < 10 ? "0" : "").append(std::to_string(n));
}

std::string capitalised(std::string word)
{
    word[0] = static_cast<char>(word[0] - 'a' + 'A');
    return word;
}

class Generator
{
public:
    explicit Generator(std::size_t count) : count_(count) { paths_.reserve(count); }

    std::vector<std::string> run()
    {
        folder("home", [this] { folder("alex", [this] { home(); }); });
        return std::move(paths_);
    }

private:
    /// The documents and pictures of a large corpus go back to this year. A small corpus holds
    /// fewer years, so that projects are always the largest part.
    static constexpr std::size_t FIRST_YEAR = 2003;
    static constexpr std::size_t LAST_YEAR = 2026;
    static constexpr std::size_t PATHS_FOR_A_YEAR = 40'000;

    bool isDone() const { return paths_.size() >= count_; }

    /// Adds a folder to the current one, and then what contents() adds to it. A name that is taken
    /// already gets a number.
    template <typename Contents>
    void folder(const std::string &name, const Contents &contents)
    {
        if (isDone())
            return;
        const std::size_t length = path_.size();
        std::string unique = name;
        for (int copy = 2; !siblings_.back().insert(unique).second; ++copy)
            unique = name + " " + std::to_string(copy);
        paths_.push_back(path_.append("/").append(unique));
        siblings_.emplace_back();
        contents();
        siblings_.pop_back();
        path_.resize(length);
    }
    void folder(const std::string &name)
    {
        folder(name, [] {});
    }

    void home()
    {
        const std::size_t years =
            std::clamp<std::size_t>(count_ / PATHS_FOR_A_YEAR, 1, LAST_YEAR - FIRST_YEAR + 1);
        firstYear_ = LAST_YEAR + 1 - years;
        folder("Documents", [this] { documents(); });
        folder("Pictures", [this] { pictures(); });
        while (!isDone()) {
            folder("Projects", [this] { repeat(120, [this] { project(); }); });
            folder("Packages", [this] { repeat(60, [this] { package(); }); });
        }
    }
    template <typename Action>
    static void repeat(std::size_t times, const Action &action)
    {
        for (; times > 0; --times)
            action();
    }
    template <typename Contents>
    void folderForEachYear(const Contents &contents)
    {
        for (std::size_t year = firstYear_; year <= LAST_YEAR; ++year)
            folder(std::to_string(year), [&] { contents(std::to_string(year)); });
    }

    void documents()
    {
        const auto letters = [this] { folder("Letter " + random_.number(1, 99)); };
        const auto file = [&] {
            const std::string first = capitalised(random_.pick(words::NOUNS));
            folder(first + " & " + capitalised(random_.pick(words::NOUNS)),
                   [&] { repeat(random_.below(4), letters); });
        };
        for (const std::string_view topic : words::TOPICS)
            folder(std::string(topic), [&] {
                folderForEachYear([&](const auto &) { repeat(random_.between(4, 40), file); });
            });
    }
    void pictures()
    {
        folderForEachYear([this](const std::string &year) {
            repeat(random_.between(30, 160), [&] {
                const std::string month = twoDigits(random_.between(1, 12));
                const std::string day = twoDigits(random_.between(1, 28));
                folder(year + "-" + month + "-" + day + " " + random_.pick(words::PLACES), [this] {
                    if (random_.isOneIn(3))
                        folder("selected");
                    if (random_.isOneIn(5))
                        folder("RAW");
                });
            });
        });
    }

    std::string projectName()
    {
        const std::string first = random_.pick(words::ADJECTIVES);
        const std::string second = random_.pick(words::NOUNS);
        switch (random_.below(5)) {
        case 0:
            return first + "_" + second;
        case 1:
            return capitalised(first) + capitalised(second);
        case 2:
            return second + "." + random_.number(1, 9) + "." + random_.number(0, 20);
        case 3:
            return second + random_.number(1, 400);
        default:
            return first + "-" + second;
        }
    }
    void project()
    {
        folder(projectName(), [this] {
            switch (random_.below(3)) {
            case 0:
                folder("src", [this] { sources(); });
                break;
            case 1:
                folder("packages",
                       [this] { repeat(random_.between(3, 25), [this] { package(); }); });
                break;
            default:
                modules(4);
            }
            folder("docs");
        });
    }
    void sources()
    {
        folder("main", [this] {
            folder("java", [this] { folder("org", [this] { modules(5); }); });
            folder("resources", [this] { languages(); });
        });
        folder("test", [this] { modules(3); });
    }
    void package()
    {
        folder(projectName(), [this] {
            folder("lib", [this] { modules(3); });
            if (random_.isOneIn(4))
                folder("locale", [this] { languages(); });
            if (random_.isOneIn(3))
                folder("dist", [this] {
                    for (const char *kind : {"esm", "cjs", "types"})
                        folder(kind);
                });
        });
    }
    void languages()
    {
        for (const std::string_view language : words::LANGUAGES)
            folder(std::string(language), [this] { folder("LC_MESSAGES"); });
    }
    std::string moduleName()
    {
        std::string module = random_.pick(words::MODULES);
        std::string noun = random_.pick(words::NOUNS);
        switch (random_.below(18)) {
        case 0:
            return capitalised(module) + capitalised(noun);
        case 1:
        case 2:
        case 3:
            return noun;
        case 4:
        case 5:
        case 6:
            return noun + "-" + module;
        default:
            return module;
        }
    }
    void modules(std::size_t depth)
    {
        repeat(random_.between(1, 5), [&] {
            folder(moduleName(), [&] {
                if (depth > 0 && random_.below(10) < 6)
                    modules(depth - 1);
            });
        });
    }

    std::size_t count_;
    Random random_;
    std::size_t firstYear_ = LAST_YEAR;
    std::string path_;
    /// The names given so far in each folder on the way to the current one.
    std::vector<std::set<std::string>> siblings_{1};
    std::vector<std::string> paths_;
};

} // namespace

std::vector<std::string> makeCorpus(std::size_t count)
{
    return Generator(count).run();
}

} // namespace quillon::bench
