// Changes a real tree at random while the real program watches it, and compares what the program
// then holds with what a crawl finds. QUILLON_WATCH_RUNS is the number of runs, each with another
// seed.

#include "base/Require.h"
#include "tests/support/Needs.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <spawn.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Lines = std::vector<std::string>;

/// The program in a session of its own, at the other end of two pipes. It ends with its input. Its
/// standard error goes to a file that is named after the command.
class Program
{
public:
    /// The program is started by another command, if there is one, which becomes this program.
    Program(const TemporaryFolder &session, Lines arguments, const Lines &starter = {})
    {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        require(::pipe2(input.data(), O_CLOEXEC) == 0 && ::pipe2(output.data(), O_CLOEXEC) == 0,
                "pipes can be made");
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO,
                                           session.path(arguments[0]).c_str(),
                                           O_WRONLY | O_CREAT | O_TRUNC, 0600);
        arguments.insert(arguments.begin(), QUILLONCTL);
        arguments.insert(arguments.begin(), starter.begin(), starter.end());
        Lines environment = {"HOME=" + session.path(), "XDG_CONFIG_HOME=" + session.path("config"),
                             "XDG_RUNTIME_DIR=" + session.path()};
        require(::posix_spawnp(&process_, arguments[0].c_str(), &actions, nullptr,
                               pointers(arguments).data(), pointers(environment).data()) == 0,
                "the program can be started");
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        to_ = ::fdopen(input[1], "w");
        from_ = ::fdopen(output[0], "r");
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    ~Program() { finish(); }

    /// Returns the records of changes that have come since, at least one of them. A line that
    /// begins otherwise is the rest of the path before it.
    Lines changes()
    {
        Lines records;
        while (records.empty()) {
            pollfd waited{.fd = ::fileno(from_), .events = POLLIN, .revents = 0};
            require(::poll(&waited, 1, 60'000) == 1, "the program tells a change");
            std::array<char, 65536> bytes{};
            const ssize_t size = ::read(::fileno(from_), bytes.data(), bytes.size());
            require(size > 0, "the program runs");
            begun_.append(bytes.data(), static_cast<std::size_t>(size));
            std::size_t start = 0;
            for (std::size_t end = begun_.find('\n'); end != std::string::npos;
                 end = begun_.find('\n', end + 1)) {
                if (end + 1 < begun_.size() && begun_[end + 1] == ' ')
                    continue;
                records.push_back(begun_.substr(start, end - start));
                start = end + 1;
            }
            begun_.erase(0, start);
        }
        return records;
    }
    /// Stops reading, which ends a program that prints changes. Returns the exit status.
    int hangUp()
    {
        std::fclose(std::exchange(from_, nullptr));
        return finish();
    }
    /// Returns the records up to a dot, or to the end.
    Lines ask(const std::string &line)
    {
        std::fputs((line + "\n").c_str(), to_);
        std::fflush(to_);
        return read();
    }
    Lines read()
    {
        Lines lines;
        std::string line;
        for (int byte = std::fgetc(from_); byte != EOF; byte = std::fgetc(from_)) {
            if (byte != '\0') {
                line += static_cast<char>(byte);
            } else if (line == ".") {
                break;
            } else {
                lines.push_back(std::exchange(line, {}));
            }
        }
        return lines;
    }
    pid_t process() const { return process_; }
    /// Returns the exit status.
    int finish()
    {
        if (to_ == nullptr)
            return status_;
        std::fclose(std::exchange(to_, nullptr));
        int status = 0;
        ::waitpid(process_, &status, 0);
        if (from_ != nullptr)
            std::fclose(from_);
        return status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    static std::vector<char *> pointers(Lines &texts)
    {
        std::vector<char *> all;
        for (std::string &text : texts)
            all.push_back(text.data());
        all.push_back(nullptr);
        return all;
    }

    pid_t process_ = -1;
    std::FILE *to_ = nullptr;
    std::FILE *from_ = nullptr;
    /// The beginning of a change whose end has not been read yet.
    std::string begun_;
    int status_ = -1;
};

/// Makes random operations on a tree, some of which reach out of it. Operations may fail, since
/// only what is on the disk afterwards counts.
class Changes
{
public:
    Changes(fs::path root, fs::path outside, unsigned seed)
        : root_(std::move(root)), outside_(std::move(outside)), random_(seed)
    {}

    void make(int count)
    {
        for (int i = 0; i < count; ++i)
            makeOne();
    }

private:
    int number(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
    std::string name()
    {
        static const Lines NAMES = {"a", "b",  "c",       "d",     "e",     ".h",    "node_modules",
                                    "f", "a2", "\n \xff", "x.app", "p.txt", "q.txt", "r.dat"};
        return NAMES.at(static_cast<std::size_t>(number(static_cast<int>(NAMES.size()))));
    }
    fs::path place()
    {
        fs::path path = root_;
        for (int depth = number(5) + 1; depth > 0; --depth)
            path /= name();
        return path;
    }
    /// Copies a folder, but not a large tree, since trees that are copied again and again would
    /// grow without end.
    static void copy(const fs::path &from, const fs::path &to)
    {
        std::error_code error;
        const auto size = std::distance(fs::recursive_directory_iterator(from, error), {});
        if (!error && size < 50 && !to.string().starts_with(from.string()))
            fs::copy(from, to, fs::copy_options::recursive, error);
    }
    void makeOne()
    {
        std::error_code error;
        const fs::path path = place();
        switch (number(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            fs::create_directories(path, error);
            break;
        case 4:
            fs::remove_all(path, error);
            break;
        case 5:
            fs::rename(path, place(), error);
            break;
        case 6:
            fs::rename(path, outside_ / std::to_string(number(5)), error);
            break;
        case 7:
            fs::rename(outside_ / std::to_string(number(5)), path, error);
            break;
        case 8:
            ::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, place().c_str(), RENAME_EXCHANGE);
            break;
        case 9:
            copy(path, place());
            break;
        case 10:
            std::ofstream(path) << "text";
            break;
        case 11: // replaced by a link
            fs::remove_all(path, error);
            fs::create_symlink(outside_, path, error);
            break;
        default:
            break;
        }
    }

    const fs::path root_;
    const fs::path outside_;
    std::mt19937 random_;
};

int runs()
{
    const char *wanted = std::getenv("QUILLON_WATCH_RUNS");
    return wanted == nullptr ? 4 : std::atoi(wanted);
}

Lines without(const Lines &all, const Lines &some)
{
    Lines rest;
    std::ranges::set_difference(all, some, std::back_inserter(rest));
    return rest;
}

class WatchedTree
{
public:
    /// Says which hidden folders are searched.
    enum class Hidden
    {
        none,
        all,
        /// Hidden folders are searched below the folder "b" alone, which is an include folder too.
        inB,
    };

    explicit WatchedTree(Hidden hidden = Hidden::none) : hidden_(hidden)
    {
        disk_.makeFolder("root");
        disk_.makeFolder("outside");
        session_.writeFile("config/quillon/quillon.json",
                           R"({"include-file-patterns": ["txt"], "search-hidden-folders": {")" +
                               inner() + R"(": true}})");
    }

    /// Makes the include folder "b" anew, since only folders that are there can be named.
    void makeB() const
    {
        if (hidden_ != Hidden::inB)
            return;
        fs::remove_all(inner());
        fs::create_directory(inner());
    }
    Lines crawled() const
    {
        Lines lines = crawled(disk_.path("root"), hidden_ == Hidden::all);
        if (hidden_ == Hidden::inB)
            std::ranges::copy(crawled(inner(), true), std::back_inserter(lines));
        std::ranges::sort(lines);
        lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
        return lines;
    }
    Lines watchArguments(const Lines &options) const
    {
        Lines arguments = changeArguments(options);
        arguments.insert(arguments.begin() + 1, "-0");
        return arguments;
    }
    Lines changeArguments(const Lines &options) const
    {
        Lines arguments = {"watch", "--latency", "0.02", "--window", "0.02"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        if (hidden_ == Hidden::all)
            arguments.push_back("--hidden");
        arguments.push_back(disk_.path("root"));
        if (hidden_ == Hidden::inB)
            arguments.push_back(inner());
        return arguments;
    }
    const TemporaryFolder &session() const { return session_; }
    const TemporaryFolder &disk() const { return disk_; }

private:
    std::string inner() const { return disk_.path("root/b"); }
    Lines crawled(const std::string &folder, bool withHidden) const
    {
        Lines arguments = {"crawl", "-0", "--ext", "txt", folder};
        if (withHidden)
            arguments.push_back("--hidden");
        return Program(session_, arguments).read();
    }

    const Hidden hidden_;
    const TemporaryFolder session_;
    const TemporaryFolder disk_;
};

WatchedTree::Hidden hiddenFor(int seed)
{
    using enum WatchedTree::Hidden;
    return std::array{inB, none, all}.at(static_cast<std::size_t>(seed) % 3);
}

TEST(Watch, holdsWhatACrawlFindsAfterRandomChanges)
{
    const std::vector<Lines> options = {{}, {"--budget", "10", "--sweep", "0.05"}};

    for (int seed = 1; seed <= runs(); ++seed) {
        const WatchedTree tree(hiddenFor(seed));
        Changes changes(tree.disk().path("root"), tree.disk().path("outside"),
                        static_cast<unsigned>(seed));
        changes.make(200);
        tree.makeB();
        Program watch(tree.session(),
                      tree.watchArguments(options.at(static_cast<std::size_t>(seed) % 2)));
        // The folder "b" has to be there when the program begins.
        if (hiddenFor(seed) == WatchedTree::Hidden::inB)
            watch.ask("");
        // The tree also changes while the build runs.
        changes.make(100);
        for (int round = 0; round < 4; ++round) {
            const Lines held = watch.ask("settle");
            const Lines found = tree.crawled();
            ASSERT_TRUE(held == found)
                << "seed " << seed << " round " << round
                << "\nstale: " << testing::PrintToString(without(held, found))
                << "\nmissing: " << testing::PrintToString(without(found, held)) << "\ntold:\n"
                << tree.session().readFile("watch");
            changes.make(300);
        }
        ASSERT_EQ(watch.finish(), 0) << tree.session().readFile("watch");
    }
}

TEST(Watch, tellsEachChangeOnceAndAnswersEveryLine)
{
    const WatchedTree tree;
    const std::string root = tree.disk().path("root");
    Program watch(tree.session(), tree.watchArguments({}));
    EXPECT_EQ(watch.ask(""), Lines{root});
    // Changes at the same time are reported in the order of the alphabet.
    const std::string file = tree.disk().writeFile("root/a.txt");
    // The folder comes with all that is in it, so that one change reports both folders.
    const std::string fresh = tree.disk().path("root/fresh");
    tree.disk().makeFolder("elsewhere/below");
    fs::rename(tree.disk().path("elsewhere"), fresh);
    const Lines expected = {root, file, fresh, fresh + "/below"};
    EXPECT_EQ(watch.ask("settle"), expected);
    EXPECT_EQ(watch.ask(""), expected);
    EXPECT_EQ(watch.finish(), 0);
    EXPECT_EQ(tree.session().readFile("watch"), file + "\n" + fresh + "\n");
}

/// Waits until the program says that its index is ready.
void awaitIndex(const WatchedTree &tree)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (tree.session().readFile("watch").find("the index is ready") == std::string::npos) {
        require(std::chrono::steady_clock::now() < end, "the index is ready in time");
        std::this_thread::sleep_for(10ms);
    }
}

/// Carries the changes out. Returns those that are none: what came was there, what went was not.
Lines carryOut(const Lines &changes, std::set<std::string> &held)
{
    Lines wrong;
    for (const std::string &change : changes) {
        const std::string path = change.substr(2);
        const bool isChange = change.starts_with("+ ")   ? held.insert(path).second
                              : change.starts_with("- ") ? held.erase(path) == 1
                                                         : false;
        if (!isChange)
            wrong.push_back(change);
    }
    return wrong;
}

TEST(Watch, printsWhatComesAndGoesOnce)
{
    const WatchedTree tree;
    const std::string root = tree.disk().path("root");
    Program watch(tree.session(), tree.changeArguments({}));
    awaitIndex(tree);
    EXPECT_EQ(tree.session().readFile("watch"),
              "quillonctl: the index is ready: 1 folders and files\n");
    const std::string file = tree.disk().writeFile("root/a.txt");
    EXPECT_EQ(watch.changes(), Lines{"+ " + file});
    // What has changed and is found again is no change.
    tree.disk().makeFolder("elsewhere/below");
    fs::rename(tree.disk().path("elsewhere"), root + "/new");
    EXPECT_EQ(watch.changes(), Lines({"+ " + root + "/new", "+ " + root + "/new/below"}));
    fs::rename(root + "/new", tree.disk().path("elsewhere"));
    EXPECT_EQ(watch.changes(), Lines({"- " + root + "/new", "- " + root + "/new/below"}));
    EXPECT_EQ(watch.hangUp(), 0);
}

TEST(Watch, printsChangesThatLeadFromOneCrawlToAnother)
{
    for (int seed = 1; seed <= runs(); ++seed) {
        const WatchedTree tree(hiddenFor(seed));
        Changes changes(tree.disk().path("root"), tree.disk().path("outside"),
                        static_cast<unsigned>(seed));
        changes.make(200);
        tree.makeB();
        const Lines begun = tree.crawled();
        std::set<std::string> held(begun.begin(), begun.end());
        Program watch(tree.session(), tree.changeArguments({}));
        awaitIndex(tree);
        for (int round = 0; round < 4; ++round) {
            changes.make(300);
            const Lines crawled = tree.crawled();
            const std::set<std::string> found(crawled.begin(), crawled.end());
            while (held != found)
                ASSERT_EQ(carryOut(watch.changes(), held), Lines()) << "seed " << seed;
        }
        ASSERT_EQ(watch.hangUp(), 0) << tree.session().readFile("watch");
    }
}

// Too few watches. A user namespace has limits of its own, for all programs in it together.

/// Returns the command that starts a program in a new namespace in which one of these limits is
/// lower.
Lines withLimit(const std::string &limit, int value)
{
    return {"unshare",
            "--user",
            "--map-root-user",
            "sh",
            "-c",
            "echo " + std::to_string(value) + " >/proc/sys/user/" + limit + " && exec \"$@\"",
            "sh"};
}

/// Returns the command that starts another program in the same namespace.
Lines beside(const Program &program)
{
    return {"nsenter", "--user", "--preserve-credentials", "--target",
            std::to_string(program.process())};
}

class ShortOfWatchesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        // NOLINTNEXTLINE(cert-env33-c)
        const int status = std::system("unshare --user --map-root-user true 2>/dev/null");
        QUILLON_NEEDS(status == 0, "user namespaces");
        for (int i = 0; i < 100; ++i)
            large_.disk().makeFolder("root/" + std::to_string(i) + "/deep/deeper");
        for (int i = 0; i < 8; ++i)
            small_.disk().makeFolder("root/" + std::to_string(i));
    }
    /// Expects the index to follow when each of the deepest folders gets another one in it.
    void expectToFollowChanges(Program &watch) const
    {
        for (int i = 0; i < 100; ++i)
            large_.disk().makeFolder("root/" + std::to_string(i) + "/deep/deeper/new");
        EXPECT_EQ(watch.ask("settle"), large_.crawled());
    }
    /// Expects another program that needs only a few watches to get them all.
    void expectRoomBeside(const Program &watch) const
    {
        Program other(small_.session(), small_.watchArguments({}), beside(watch));
        EXPECT_EQ(other.ask("").size(), 9U);
        const std::string fresh = small_.disk().makeFolder("root/3/fresh");
        EXPECT_EQ(other.ask("settle").size(), 10U);
        EXPECT_EQ(other.finish(), 0);
        EXPECT_EQ(small_.session().readFile("watch"), fresh + "\n") << "and no word of a shortage";
    }

    const WatchedTree large_;
    const WatchedTree small_;
};

TEST_F(ShortOfWatchesTest, leavesOthersTheirWatchesAtItsBudget)
{
    Program watch(large_.session(), large_.watchArguments({"--budget", "100"}),
                  withLimit("max_inotify_watches", 130));
    EXPECT_EQ(watch.ask("settle").size(), 301U);
    expectRoomBeside(watch);
    expectToFollowChanges(watch);
    EXPECT_THAT(large_.session().readFile("watch"), HasSubstr("watching 100 of 301 folders"));
    EXPECT_EQ(watch.finish(), 0);
}

TEST_F(ShortOfWatchesTest, givesSomeBackWhenTheSystemRefusesOne)
{
    Program watch(large_.session(), large_.watchArguments({"--budget", "1000"}),
                  withLimit("max_inotify_watches", 200));
    EXPECT_EQ(watch.ask("settle").size(), 301U);
    expectRoomBeside(watch);
    expectToFollowChanges(watch);
    const std::string said = large_.session().readFile("watch");
    const std::size_t line = said.find("quillon: watching ");
    EXPECT_NE(line, std::string::npos);
    EXPECT_EQ(said.find("quillon: watching ", line + 1), std::string::npos) << "said once";
    EXPECT_EQ(watch.finish(), 0);
}

TEST_F(ShortOfWatchesTest, looksAtEverythingWhereThereIsNoWatchAtAll)
{
    Program watch(large_.session(), large_.watchArguments({"--sweep", "0.05"}),
                  withLimit("max_inotify_instances", 0));
    EXPECT_EQ(watch.ask("").size(), 301U);
    expectToFollowChanges(watch);
    EXPECT_EQ(watch.finish(), 0);
}

} // namespace

} // namespace quillon
