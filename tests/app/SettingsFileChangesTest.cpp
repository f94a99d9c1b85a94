#include "platform/linux/settings/SettingsFileChanges.h"

#include "tests/support/Patience.h"
#include "tests/support/TemporaryFolder.h"

#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

namespace fs = std::filesystem;

} // namespace

class SettingsFileChangesTest : public testing::Test
{
protected:
    /// Writes the file in place, as some editors do.
    static void write(const fs::path &file, const std::string &text)
    {
        std::ofstream(file) << text;
    }
    /// Puts another file in its place, as other editors do.
    static void replace(const fs::path &file, const std::string &text)
    {
        const fs::path fresh = file.string() + ".new";
        write(fresh, text);
        fs::rename(fresh, file);
    }
    void watch()
    {
        changes.emplace(file.string());
        receivers.push_back(changes->onChange([this] {
            std::ifstream stream(file);
            seen.assign(std::istreambuf_iterator<char>(stream), {});
        }));
        receivers.push_back(changes->onChange([this] { ++alsoTold; }));
        static_cast<void>(changes->onChange([] { FAIL() << "this receiver is gone"; }));
    }
    /// Returns whether the reads that follow each report see this text in the end.
    bool comesTo(const std::string &text)
    {
        return QTest::qWaitFor([&] { return seen == text; }, PATIENCE);
    }

    TemporaryFolder tree;
    fs::path file = fs::path(tree.path("quillon")) / "quillon.json";
    std::optional<SettingsFileChanges> changes;
    std::vector<DefaultsReceiver> receivers;
    std::string seen;
    int alsoTold = 0;
};

TEST_F(SettingsFileChangesTest, tellsOfAFileThatIsMadeWrittenReplacedAndRemoved)
{
    watch();
    for (int round = 0; round < 2; ++round) {
        fs::create_directory(file.parent_path());
        for (const std::string text : {"made", "once", "twice"}) {
            write(file, text);
            ASSERT_TRUE(comesTo(text)) << "written";
            EXPECT_GT(std::exchange(alsoTold, 0), 0);
            replace(file, text + ", another");
            ASSERT_TRUE(comesTo(text + ", another")) << "replaced";
        }
        fs::remove_all(file.parent_path());
        ASSERT_TRUE(comesTo("")) << "removed with its folder";
    }
}

TEST_F(SettingsFileChangesTest, followsALinkToWhereTheFileIsKept)
{
    fs::create_directory(file.parent_path());
    const fs::path kept = tree.writeFile("kept/quillon.json");
    fs::create_symlink(kept, file);
    watch();
    for (const char *text : {"once", "twice"}) {
        replace(kept, text);
        ASSERT_TRUE(comesTo(text));
    }
}

} // namespace quillon
