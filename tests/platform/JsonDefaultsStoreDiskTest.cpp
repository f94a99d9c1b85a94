#include "tests/platform/StoreSupport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <ostream>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quillon {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class JsonDefaultsStoreDisk : public StoreTest
{
protected:
    static std::string document(std::string_view word)
    {
        return R"({"word": ")" + std::string(word) + "\"}";
    }
    /// Replaces the file by another one with the given text and the same time stamp.
    void replaceByHand(const std::string &text) const
    {
        struct stat old = {};
        ASSERT_EQ(::stat(path.c_str(), &old), 0);
        const std::string other = folder.writeFile("other", text);
        const timespec times[] = {old.st_atim, old.st_mtim};
        ASSERT_EQ(::utimensat(AT_FDCWD, other.c_str(), times, 0), 0);
        fs::rename(other, path);
    }
    /// Waits until the file no longer looks as if somebody were writing it.
    void letRest() const
    {
        ASSERT_TRUE(becomesTrue([&] { return SettingsFile(path).read().rested; }));
    }
    /// Returns the texts of the files that were kept, in the order of their names, the oldest
    /// first.
    Strings keptTexts() const
    {
        Strings texts;
        for (const std::string &name : filesBeside())
            if (name.starts_with("quillon.json.bad-"))
                texts.push_back(folder.readFile("config/quillon/" + name));
        return texts;
    }
};

TEST_F(JsonDefaultsStoreDisk, showsAHandEditOnTheNextRead)
{
    writeByHand(document("one"));
    const JsonDefaultsStore store(path);
    EXPECT_EQ(store.string("word"), "one");
    // The size is the same each time, and most likely the tick of the clock too.
    for (const std::string word : {"two", "ten", "six", "one", "two"}) {
        writeByHand(document(word));
        EXPECT_EQ(store.string("word"), word);
    }
    // The size and the time of the last change are as before. The file is old enough to be relied
    // on.
    ASSERT_TRUE(becomesTrue([&] { return SettingsFile(path).read().isTrusted; }));
    EXPECT_EQ(store.string("word"), "two");
    replaceByHand(document("ten"));
    std::thread([&] { EXPECT_EQ(store.string("word"), "ten"); }).join();
    fs::remove(path);
    EXPECT_EQ(store.string("word"), std::nullopt);
    writeByHand(document("new"));
    EXPECT_EQ(store.string("word"), "new");
}

TEST_F(JsonDefaultsStoreDisk, losesNothingBetweenTwoProcesses)
{
    constexpr int writes = 100;
    const auto writer = [&](const std::string &name) {
        return fork([&, name] {
            JsonDefaultsStore store(path);
            bool written = true;
            for (std::int64_t i = 0; i < writes; ++i)
                written = store.set(name + std::to_string(i), {i}) && written;
            return written;
        });
    };
    const pid_t children[] = {writer("a"), writer("b")};
    for (const pid_t child : children)
        EXPECT_TRUE(succeeded(child));
    const JsonDefaultsStore store(path);
    for (std::int64_t i = 0; i < writes; ++i)
        for (const std::string name : {"a", "b"})
            EXPECT_EQ(store.value(name + std::to_string(i)), DefaultsValue{i}) << name << i;
}

TEST_F(JsonDefaultsStoreDisk, survivesAKilledWriter)
{
    const auto entries = [](std::int64_t number) {
        DefaultsDictionary dictionary;
        for (int i = 0; i < 300; ++i)
            dictionary.emplace("/some/folder/" + std::to_string(i), DefaultsValue{number});
        return DefaultsValue{std::move(dictionary)};
    };
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("counts", entries(0)));
    testing::internal::CaptureStderr();
    for (std::int64_t round = 1; round <= 15; ++round) {
        const pid_t child = fork([&]() -> bool {
            JsonDefaultsStore own(path);
            for (std::int64_t i = 0;; ++i)
                own.set("counts", entries(round * 1'000'000 + i));
        });
        const bool started = becomesTrue([&] {
            return store.dictionary("counts").value().at("/some/folder/0").asInteger() >=
                   round * 1'000'000 + round;
        });
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ASSERT_TRUE(started);
        const DefaultsDictionary counts = store.dictionary("counts").value();
        ASSERT_EQ(counts.size(), 300U);
        for (const auto &[name, count] : counts)
            ASSERT_EQ(count, counts.begin()->second);
        ASSERT_TRUE(store.set("round", {round}));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(keptTexts(), Strings());
}

TEST_F(JsonDefaultsStoreDisk, keepsTheOldDataOnAFullDisk)
{
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("key", {"small"}));
    const auto writeTooMuch = [&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {.rlim_cur = 4096, .rlim_max = 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return !store.set("key", {std::string(20'000, 'x')}) && store.string("key") != "x";
    };
    EXPECT_TRUE(succeeded(fork(writeTooMuch)));
    EXPECT_EQ(store.string("key"), "small");
    EXPECT_EQ(filesBeside(), Strings());

    // A file that was to be kept aside stays where it is.
    writeByHand("{bad");
    EXPECT_TRUE(succeeded(fork(writeTooMuch)));
    EXPECT_EQ(text(), "{bad");
    EXPECT_EQ(filesBeside(), Strings());
}

struct FaultRow
{
    std::string name;
    std::string text;
    std::string diagnostic;

    friend std::ostream &operator<<(std::ostream &out, const FaultRow &row)
    {
        return out << row.name;
    }
};

class JsonDefaultsStoreFaults : public JsonDefaultsStoreDisk,
                                public testing::WithParamInterface<FaultRow>
{};

TEST_P(JsonDefaultsStoreFaults, keepTheFileAndTheSettingsReadLast)
{
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("old", {"value"}));
    testing::internal::CaptureStderr();
    writeByHand(GetParam().text);
    EXPECT_EQ(store.string("old"), "value");
    letRest();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(store.string("old"), "value");
    EXPECT_TRUE(store.remove("absent"));
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    EXPECT_THAT(said, StartsWith("quillon: " + path + GetParam().diagnostic));
    EXPECT_EQ(text(), GetParam().text);
    EXPECT_EQ(filesBeside(), Strings());

    testing::internal::CaptureStderr();
    EXPECT_TRUE(store.set("old", {"value"})); // No change, but it is not on the disk.
    EXPECT_THAT(keptTexts(), ElementsAre(GetParam().text));
    writeByHand("[again]");
    EXPECT_TRUE(store.set("new", {true}));
    EXPECT_THAT(keptTexts(), ElementsAre(GetParam().text, "[again]"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(filesBeside().back()));
    const JsonDefaultsStore restarted(path);
    EXPECT_EQ(restarted.string("old"), "value");
    EXPECT_EQ(restarted.boolean("new"), true);
}

TEST_P(JsonDefaultsStoreFaults, areLeftToTheUserWhereNothingWasReadBefore)
{
    if (GetParam().text.empty())
        GTEST_SKIP() << "an empty file has no settings that could be lost";
    writeByHand(GetParam().text);
    JsonDefaultsStore store(path);
    testing::internal::CaptureStderr();
    const auto fault = store.fault();
    ASSERT_TRUE(fault.has_value());
    EXPECT_THAT(fault->description(), StartsWith(path + GetParam().diagnostic));
    EXPECT_TRUE(fault->nothingRead);
    EXPECT_FALSE(store.set("key", {true}));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("no settings were read"));
    EXPECT_EQ(text(), GetParam().text);

    const auto kept = store.beginAnew();
    ASSERT_TRUE(kept.has_value());
    EXPECT_THAT(*kept, StartsWith(path + ".bad-"));
    EXPECT_THAT(keptTexts(), ElementsAre(GetParam().text));
    EXPECT_EQ(store.fault(), std::nullopt);
    EXPECT_TRUE(store.set("key", {true}));
    EXPECT_EQ(store.beginAnew(), "");
    EXPECT_EQ(store.boolean("key"), true);
}

const FaultRow FAULT_ROWS[] = {
    {"trailingComma", "{\n  \"\xC3\xA4\": \"\xC3\xA4\",\n}\n", ":3:1: "},
    {"strayWord", "{\n  \"\xC3\xA4\": \"\xC3\xA4\" and\n}\n", ":2:12: "},
    {"cutShort", "{\"a\": [1", ":1:"},
    {"noObject", "[1, 2]", ":1:1: "},
    {"noUtf8", "{\"a\": \"\xFF\"}", ":1:"},
    {"noByte", "", ":1:1: the file is empty"},
};
INSTANTIATE_TEST_SUITE_P(Rows, JsonDefaultsStoreFaults, testing::ValuesIn(FAULT_ROWS),
                         [](const auto &row) { return row.param.name; });

TEST_F(JsonDefaultsStoreDisk, writesNothingWhereTheFileCannotBeRead)
{
    const auto cannotBeRead = [&](JsonDefaultsStore &store, bool nothingRead) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(store.boolean("old"), nothingRead ? std::nullopt : std::optional(true));
        EXPECT_FALSE(store.set("key", {true}));
        EXPECT_FALSE(store.set("old", {false}));
        const auto fault = store.fault();
        ASSERT_TRUE(fault.has_value());
        EXPECT_EQ(fault->line, 0);
        EXPECT_EQ(fault->nothingRead, nothingRead);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("nothing is written"));
        EXPECT_EQ(filesBeside(), Strings());
    };
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("old", {true}));
    const std::string whole = path + "-whole";
    fs::rename(path, whole);
    fs::create_directory(path);
    cannotBeRead(store, false);
    EXPECT_TRUE(fs::is_directory(path));
    fs::remove(path);
    fs::create_symlink("quillon.json", path);
    cannotBeRead(store, false);
    EXPECT_TRUE(fs::is_symlink(path));
    fs::rename(whole, path);
    if (::geteuid() != 0) { // root may read everything
        ASSERT_EQ(::chmod(path.c_str(), 0), 0);
        cannotBeRead(store, false);
        JsonDefaultsStore started(path);
        cannotBeRead(started, true);
        ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    }
    EXPECT_EQ(store.fault(), std::nullopt);
    EXPECT_TRUE(store.set("key", {true}));
    EXPECT_EQ(JsonDefaultsStore(path).boolean("old"), true);
}

/// One way in which an editor saves.
struct SaveRow
{
    std::string name;
    /// Gives the file the text. It may use the second name, which is beside the file.
    std::function<void(const std::string &file, const std::string &text)> save;

    friend std::ostream &operator<<(std::ostream &out, const SaveRow &row)
    {
        return out << row.name;
    }
};

/// Returns true when it was done within the time that an editor may take to save.
template <typename Save>
bool isQuick(const Save &save)
{
    const auto start = std::chrono::steady_clock::now();
    save();
    return std::chrono::steady_clock::now() - start <
           std::chrono::milliseconds(SettingsFile::WRITING_TIME);
}

/// Empties the file and fills it some time later, in two pieces.
void writeInPlace(const std::string &file, const std::string &text)
{
    static unsigned saves = 0;
    const auto wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(saves % 4 * 7)); };
    ++saves;
    std::ofstream stream(file, std::ios::trunc);
    stream.flush();
    wait();
    stream << text.substr(0, text.size() / 2) << std::flush;
    wait();
    stream << text.substr(text.size() / 2);
}

const SaveRow SAVE_ROWS[] = {
    {"inPlace", writeInPlace},
    {"replaced",
     [](const std::string &file, const std::string &text) {
         writeInPlace(file + "-new", text);
         fs::rename(file + "-new", file);
     }},
    {"renamedFirst",
     [](const std::string &file, const std::string &text) {
         fs::rename(file, file + "-old");
         writeInPlace(file, text);
     }},
    {"openedEarly",
     [](const std::string &file, const std::string &text) {
         const Descriptor opened(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
         std::this_thread::sleep_for(std::chrono::milliseconds(20));
         ASSERT_EQ(::ftruncate(opened.get(), 0), 0);
         ASSERT_EQ(::write(opened.get(), text.data(), text.size()), std::ssize(text));
     }},
};

TEST_F(JsonDefaultsStoreDisk, takesAFileThatIsBeingCutShortForNoMistake)
{
    // For a moment such a file is empty and has the times of before. A save that takes longer than
    // an editor may need is made again.
    constexpr int rounds = 5;
    writeByHand(document("one"));
    JsonDefaultsStore store(path);
    EXPECT_EQ(store.string("word"), "one");
    std::atomic<bool> done = false;
    std::atomic<int> reads = 0;
    std::thread reader([&] {
        for (; !done; ++reads)
            (void)store.string("word");
    });
    const auto isReadAgain = [&] {
        return becomesTrue([&, before = reads.load()] { return reads > before + 1; });
    };
    for (int round = 0; round < rounds;) {
        letRest();
        EXPECT_TRUE(isReadAgain());
        testing::internal::CaptureStderr();
        const bool counts = isQuick([&] { writeByHand(document("two")); });
        EXPECT_TRUE(isReadAgain());
        const std::string said = testing::internal::GetCapturedStderr();
        if (counts) {
            EXPECT_EQ(said, "");
            ++round;
        }
    }
    done = true;
    reader.join();
    EXPECT_EQ(store.string("word"), "two");
}

class JsonDefaultsStoreEditors : public JsonDefaultsStoreDisk,
                                 public testing::WithParamInterface<SaveRow>
{};

TEST_P(JsonDefaultsStoreEditors, loseNoSaveBesideAProgramThatStores)
{
    const char *const more = std::getenv("QUILLON_SAVES");
    const int saves = more ? std::atoi(more) : 25;
    const std::string other(3000, 'x');
    const auto document = [&](int save) {
        return "{\"save\": " + std::to_string(save) + ", \"other\": \"" + other + "\"}";
    };
    writeByHand(document(0));
    std::atomic<bool> done = false;
    std::atomic<int> stored = 0;
    std::atomic<int> failed = 0;
    testing::internal::CaptureStderr();
    std::thread program([&] {
        JsonDefaultsStore store(path);
        for (std::int64_t i = 0; !done; ++i) {
            failed += store.set("own", {i}) ? 0 : 1;
            ++stored;
        }
    });
    int lost = 0;
    int slow = 0; // Nothing is promised for these.
    for (int save = 1; save <= saves; ++save) {
        slow += isQuick([&] { GetParam().save(path, document(save)); }) ? 0 : 1;
        const int before = stored;
        ASSERT_TRUE(becomesTrue([&] { return stored > before + 1; }));
        const JsonDefaultsStore fresh(path);
        lost += fresh.value("save") == DefaultsValue{std::int64_t{save}} &&
                        fresh.string("other") == other && fresh.contains("own")
                    ? 0
                    : 1;
    }
    done = true;
    program.join();
    EXPECT_LE(lost, slow) << "of " << saves;
    EXPECT_EQ(failed, 0);
    const std::string said = testing::internal::GetCapturedStderr();
    if (slow == 0) {
        EXPECT_EQ(said, "");
        EXPECT_EQ(keptTexts(), Strings());
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, JsonDefaultsStoreEditors, testing::ValuesIn(SAVE_ROWS),
                         [](const auto &row) { return row.param.name; });

TEST_F(JsonDefaultsStoreDisk, storesInAFileThatSomebodyKeepsOpen)
{
    writeByHand(document("one"));
    const Descriptor opened(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    JsonDefaultsStore store(path);
    EXPECT_TRUE(store.set("key", {true}));
    EXPECT_TRUE(JsonDefaultsStore(path).contains("key"));
}

TEST_F(JsonDefaultsStoreDisk, reportsAFolderThatCannotBeMade)
{
    folder.writeFile("config", "a file");
    JsonDefaultsStore store(path);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(store.set("key", {true}));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Not a directory"));
    EXPECT_FALSE(store.contains("key"));
}

TEST_F(JsonDefaultsStoreDisk, writesThroughASymbolicLink)
{
    const std::string target = folder.writeFile("dotfiles/settings", document("one"));
    fs::create_directories(fs::path(path).parent_path());
    fs::create_symlink("../../dotfiles/settings", path);
    JsonDefaultsStore store(path);
    EXPECT_EQ(store.string("word"), "one");
    EXPECT_TRUE(store.set("word", {"two"}));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_THAT(folder.readFile("dotfiles/settings"), HasSubstr("two"));

    folder.writeFile("dotfiles/settings", "{bad");
    testing::internal::CaptureStderr();
    EXPECT_TRUE(store.set("word", {"six"}));
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(JsonDefaultsStore(path).string("word"), "six");
    fs::remove(target);
    EXPECT_FALSE(store.contains("word"));
    EXPECT_TRUE(store.set("word", {"ten"}));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(store.synchronize());
}

TEST_F(JsonDefaultsStoreDisk, clearsAwayWhatKilledWritersLeft)
{
    const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(2);
    for (const std::string name : {"aBcDeF", "backup", "Backup", "BACKUP", "1BcDeF", "abcdefG"}) {
        const std::string file = folder.writeFile("config/quillon/quillon.json." + name);
        fs::last_write_time(file, old);
    }
    folder.writeFile("config/quillon/quillon.json.FeDcBa");
    const JsonDefaultsStore store(path);
    EXPECT_THAT(filesBeside(),
                ElementsAre("quillon.json.1BcDeF", "quillon.json.BACKUP", "quillon.json.Backup",
                            "quillon.json.FeDcBa", "quillon.json.abcdefG", "quillon.json.backup"));
}

TEST_F(JsonDefaultsStoreDisk, isReadByThreadsWhileOneWrites)
{
    const auto pair = [](std::int64_t number) {
        return DefaultsValue{DefaultsDictionary{{"a", {number}}, {"b", {number}}}};
    };
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("pair", pair(0)));
    std::atomic<bool> done = false;
    std::atomic<int> faults = 0;
    std::atomic<int> begun = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&] {
            std::int64_t last = 0;
            for (bool first = true; !done; first = false) {
                const DefaultsDictionary read = store.dictionary("pair").value_or(
                    DefaultsDictionary{{"a", {std::int64_t{-1}}}, {"b", {std::int64_t{-2}}}});
                const auto number = read.at("a").asInteger();
                if (number != read.at("b").asInteger() || number < last)
                    ++faults;
                last = number.value_or(last);
                begun += first ? 1 : 0;
            }
        });
    EXPECT_TRUE(becomesTrue([&] { return begun == 4; }));
    for (std::int64_t i = 1; i <= 300; ++i)
        EXPECT_TRUE(store.set("pair", pair(i)));
    done = true;
    for (std::thread &reader : readers)
        reader.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(store.value("pair"), pair(300));
}

} // namespace
} // namespace quillon
