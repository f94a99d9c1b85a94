#include "platform/linux/settings/JsonDefaultsStore.h"

#include "base/JsonValues.h"
#include "tests/platform/StoreSupport.h"

#include <QJsonDocument>

#include <cstdlib>
#include <limits>
#include <ostream>
#include <random>

#include <sys/stat.h>

using namespace std::literals;

namespace quillon {
namespace {

using Strings = std::vector<std::string>;

/// The result of each typed read for a value written by hand.
struct TypeRow
{
    std::string name;
    std::string json;
    std::optional<bool> boolean = false;
    std::optional<std::string> string = std::nullopt;
    std::optional<Strings> strings = std::nullopt;
    std::optional<std::string> data = std::nullopt;
    std::optional<std::int64_t> integer = std::nullopt;
    bool isDictionary = false;

    friend std::ostream &operator<<(std::ostream &out, const TypeRow &row)
    {
        return out << row.json;
    }
};

const TypeRow TYPE_ROWS[] = {
    {.name = "null", .json = "null", .boolean = std::nullopt},
    {.name = "yes", .json = "true", .boolean = true},
    {.name = "no", .json = "false"},
    {.name = "one", .json = "1", .boolean = true, .integer = 1},
    {.name = "zero", .json = "0", .integer = 0},
    {.name = "zeroWithFraction", .json = "0.0", .integer = 0},
    {.name = "fraction", .json = "2.5", .boolean = true},
    {.name = "wholeDouble", .json = "3.0", .boolean = true, .integer = 3},
    {.name = "beyondDouble",
     .json = "9007199254740993",
     .boolean = true,
     .integer = 9007199254740993},
    {.name = "beyondInteger", .json = "9223372036854775808", .boolean = true},
    {.name = "textYes", .json = R"("YES")", .boolean = true, .string = "YES", .data = "YES"},
    {.name = "textTrue", .json = R"("True")", .boolean = true, .string = "True", .data = "True"},
    {.name = "textOne", .json = R"("1")", .boolean = true, .string = "1", .data = "1"},
    {.name = "textNo", .json = R"("NO")", .string = "NO", .data = "NO"},
    {.name = "textTen", .json = R"("10")", .string = "10", .data = "10"},
    {.name = "textOfBytes",
     .json = R"("\u00e4\udcff")",
     .string = "\xC3\xA4\xFF",
     .data = "\xC3\xA4\xFF"},
    {.name = "emptyList", .json = "[]", .strings = Strings()},
    {.name = "list", .json = R"(["b", "a"])", .strings = Strings{"b", "a"}},
    {.name = "listWithNumber", .json = R"(["a", 1])"},
    {.name = "listWithNull", .json = R"(["a", null])"},
    {.name = "data",
     .json = R"({"$data": "AP9h"})",
     .data = "\0\xFF"
             "a"s},
    {.name = "noBase64", .json = R"({"$data": "?"})", .isDictionary = true},
    {.name = "dataAndMore", .json = R"({"$data": "AP8=", "b": 1})", .isDictionary = true},
    {.name = "dictionary", .json = R"({"a": null})", .isDictionary = true},
};

class JsonDefaultsStoreTypes : public StoreTest, public testing::WithParamInterface<TypeRow>
{};

TEST_P(JsonDefaultsStoreTypes, readsAValueAsOneTypeAndAlwaysAsABoolean)
{
    const TypeRow &row = GetParam();
    writeByHand(R"({"key": )" + row.json + "}");
    const JsonDefaultsStore store(path);
    EXPECT_EQ(store.contains("key"), row.boolean.has_value());
    EXPECT_EQ(store.boolean("key"), row.boolean);
    EXPECT_EQ(store.string("key"), row.string);
    EXPECT_EQ(store.stringArray("key"), row.strings);
    EXPECT_EQ(store.data("key"), row.data);
    EXPECT_EQ(store.dictionary("key").has_value(), row.isDictionary);
    const auto value = store.value("key");
    EXPECT_EQ(value ? value->asInteger() : std::nullopt, row.integer);
}

INSTANTIATE_TEST_SUITE_P(Rows, JsonDefaultsStoreTypes, testing::ValuesIn(TYPE_ROWS),
                         [](const auto &row) { return row.param.name; });

class JsonDefaultsStoreTest : public StoreTest
{};

TEST_F(JsonDefaultsStoreTest, leavesTheDiskAloneUntilSomethingIsWritten)
{
    JsonDefaultsStore store(path);
    EXPECT_FALSE(store.contains("key"));
    EXPECT_TRUE(store.remove("key"));
    EXPECT_TRUE(store.removeAll());
    EXPECT_TRUE(store.synchronize());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(JsonDefaultsStoreTest, givesBackEveryValueAfterARestart)
{
    using Limits = std::numeric_limits<std::int64_t>;
    DefaultsDictionary nested = {{"/home/u/Ordner \xC3\xA4", {std::int64_t{7}}},
                                 {"/tmp/\xFF\xC3(\xED\xA0\x80\xF4\x90\x80\x80", {false}},
                                 {"/\xF0\x9F\x93\x81", {DefaultsData{"\0\x80"s}}},
                                 {"$data", {"AAAA"}},
                                 {"$$", {nullptr}},
                                 {"", {DefaultsArray()}}};
    const std::map<std::string, DefaultsValue> values = {
        {"false", {false}},
        {"least", {Limits::min()}},
        {"most", {Limits::max()}},
        {"fraction", {0.1}},
        {"text", {"a\0\"\\\n\xFF"s}},
        {"empty data", {DefaultsData()}},
        {"empty list", {DefaultsArray()}},
        {"empty dictionary", {DefaultsDictionary()}},
        {"only the tag", {DefaultsDictionary{{"$data", {"AAAA"}}}}},
        {"list", {DefaultsArray{{nested}, {true}, {nullptr}}}},
        {"\xFF key", {nested}},
    };
    JsonDefaultsStore store(path);
    for (const auto &[key, value] : values)
        EXPECT_TRUE(store.set(key, value)) << key;
    const JsonDefaultsStore restarted(path);
    for (const auto &[key, value] : values)
        EXPECT_EQ(restarted.value(key), value) << key;

    EXPECT_TRUE(store.remove("\xFF key"));
    EXPECT_FALSE(restarted.contains("\xFF key"));
    EXPECT_TRUE(restarted.contains("empty list"));
    EXPECT_TRUE(store.removeAll());
    EXPECT_FALSE(restarted.contains("empty list"));
    EXPECT_EQ(text(), "{\n}\n");
}

TEST(JsonValues, carryEveryStringOfBytes)
{
    std::mt19937 random(20240601); // NOLINT(cert-msc51-cpp): the same run each time
    // Most of these bytes begin, continue or break sequences of UTF-8.
    const std::string_view bytes = "a\x7F\x80\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (int round = 0; round < 20'000; ++round) {
        std::string sample(random() % 9, ' ');
        for (char &byte : sample)
            byte = bytes[random() % bytes.size()];
        const QString text = bytesToText(sample);
        ASSERT_EQ(textToBytes(text), sample) << testing::PrintToString(sample);
        // Where the toolkit finds no fault, our own check must find none.
        if (text == QString::fromUtf8(sample))
            ASSERT_EQ(text.toUtf8().toStdString(), sample);
        else
            ASSERT_TRUE(QString::fromUtf8(sample).contains(QChar::ReplacementCharacter));
    }
}

TEST_F(JsonDefaultsStoreTest, keepsWhatItDoesNotKnow)
{
    const std::string_view unknown =
        R"({"shape": [null, {"$data": 5, "x": [[]]}], "null": null, "$x": {"$y": "\ud800"}})";
    writeByHand(unknown);
    JsonDefaultsStore store(path);
    EXPECT_TRUE(store.set("known", {true}));
    EXPECT_TRUE(store.remove("known"));
    const auto parsed = [](std::string_view json) {
        return QJsonDocument::fromJson(QByteArray(json.data(), std::ssize(json)));
    };
    EXPECT_EQ(parsed(text()), parsed(unknown));
}

TEST_F(JsonDefaultsStoreTest, writesTheDiskOnlyForAChange)
{
    JsonDefaultsStore store(path);
    ASSERT_TRUE(store.set("list", {DefaultsArray{{"a"}}}));
    const ino_t before = inode();
    EXPECT_TRUE(store.set("list", {DefaultsArray{{"a"}}}));
    EXPECT_TRUE(store.remove("absent"));
    EXPECT_EQ(inode(), before);
    EXPECT_TRUE(store.set("list", {DefaultsArray{{"b"}}}));
    EXPECT_NE(inode(), before);
}

TEST_F(JsonDefaultsStoreTest, letsOnlyTheOwnerRead)
{
    JsonDefaultsStore store(path);
    const mode_t umask = ::umask(0);
    EXPECT_TRUE(store.set("key", {true}));
    ::umask(umask);
    struct stat status = {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat(folder.path("config/quillon").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST_F(JsonDefaultsStoreTest, takesABlankFileForOneWithoutKeys)
{
    writeByHand(" \n\t\n");
    JsonDefaultsStore store(path);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(store.contains("key"));
    EXPECT_TRUE(store.set("key", {true}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(filesBeside(), Strings());
}

struct PathRow
{
    std::string configHome;
    std::string home;
    std::string expected;
};

TEST(StandardDefaultsPath, ignoresRelativeFolders)
{
    const PathRow rows[] = {
        {"/etc/c", "/home/u", "/etc/c/quillon/quillon.json"},
        {"", "/home/u", "/home/u/.config/quillon/quillon.json"},
        {"c", "/home/u", "/home/u/.config/quillon/quillon.json"},
    };
    for (const PathRow &row : rows) {
        ::setenv("XDG_CONFIG_HOME", row.configHome.c_str(), 1);
        ::setenv("HOME", row.home.c_str(), 1);
        EXPECT_EQ(standardDefaultsPath(), row.expected) << row.configHome;
    }
}

} // namespace
} // namespace quillon
