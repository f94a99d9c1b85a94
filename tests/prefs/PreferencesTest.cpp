#include "prefs/Preferences.h"

#include "prefs/PreferenceKeys.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/StoredTexts.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillon {
namespace {

using Strings = std::vector<std::string>;

TEST(PreferencesBoolean, readsAnythingStoredAsABooleanAndNothingAsFalse)
{
    FakeDefaultsStore store;
    PreferencesBoolean preference(store, "key", true);
    EXPECT_FALSE(preference.value());
    EXPECT_TRUE(preference.set(true));
    EXPECT_TRUE(preference.value());
    store.set("key", {"yes"});
    EXPECT_TRUE(preference.value());
    store.set("key", listOf({"yes"}));
    EXPECT_FALSE(preference.value());
    store.failWrites();
    EXPECT_FALSE(preference.set(true));
}

/// One change of a list whose defaults are "a" and "b".
struct ListRow
{
    std::string name;
    std::optional<DefaultsValue> stored;
    std::string added;
    std::string removed;
    Strings values;
    int writes = 1;

    friend std::ostream &operator<<(std::ostream &out, const ListRow &row)
    {
        return out << row.name;
    }
};

const ListRow LIST_ROWS[] = {
    {"neverWritten", std::nullopt, "", "", {"a", "b"}, 0},
    {"emptied", listOf({}), "", "", {}, 0},
    {"noList", DefaultsValue{"a"}, "", "", {"a", "b"}, 0},
    {"addToDefaults", std::nullopt, "c", "", {"a", "b", "c"}},
    {"addADefault", std::nullopt, "a", "", {"a", "b"}, 0},
    {"addToEmptied", listOf({}), "a", "", {"a"}},
    {"addTwice", listOf({"x"}), "x", "", {"x"}, 0},
    {"addInOtherCase", listOf({"x"}), "X", "", {"x", "X"}},
    {"removeADefault", std::nullopt, "", "a", {"b"}},
    {"removeAnAbsentOneFromDefaults", std::nullopt, "", "x", {"a", "b"}},
    {"removeEveryEqualOne", listOf({"x", "y", "x", "z"}), "", "x", {"y", "z"}},
    {"removeTheLast", listOf({"x"}), "", "x", {}},
};

class PreferencesArrayListRows : public testing::TestWithParam<ListRow>
{};

TEST_P(PreferencesArrayListRows, changeAndWriteTheWholeList)
{
    const ListRow &row = GetParam();
    FakeDefaultsStore store;
    if (row.stored)
        store.set("key", *row.stored);
    const int before = store.writes();
    PreferencesArrayList list(store, "key", true, {"a", "b"});
    EXPECT_TRUE(row.added.empty() || list.add(row.added));
    EXPECT_TRUE(row.removed.empty() || list.remove(row.removed));
    EXPECT_EQ(list.values(), row.values);
    EXPECT_EQ(store.writes() - before, row.writes);
    EXPECT_EQ(store.value("key"), row.writes == 0 ? row.stored : listOf(row.values));
}

INSTANTIATE_TEST_SUITE_P(Rows, PreferencesArrayListRows, testing::ValuesIn(LIST_ROWS),
                         [](const auto &row) { return row.param.name; });

TEST(PreferencesSelectList, givesTheStoredChoiceOrTheDefault)
{
    FakeDefaultsStore store;
    Preferences preferences(store);
    PreferencesSelectList &list = preferences.openInFinderBehavior;
    EXPECT_EQ(list.keys(), (Strings{"new", "existing"}));
    EXPECT_EQ(list.selected().key, "new");
    EXPECT_EQ(list.selected().title, "New Window");
    EXPECT_TRUE(list.select(Preferences::OpenInFinder::existing));
    EXPECT_EQ(store.string("open-finder-behavior"), "existing");
    EXPECT_EQ(list.selected().title, "Existing Window");
    store.set("open-finder-behavior", {std::int64_t{1}});
    EXPECT_EQ(list.selected(), Preferences::OpenInFinder::newWindow);
}

TEST(PreferencesSelectList, keepsTheChoiceReadLastWhereTheStoredOneIsNone)
{
    FakeDefaultsStore store;
    store.set("open-finder-behavior", {"existing"});
    const Preferences preferences(store);
    const PreferencesSelectList &list = preferences.openInFinderBehavior;
    EXPECT_EQ(preferences.wrongChoices(), std::vector<WrongChoice>());

    testing::internal::CaptureStderr();
    for (const std::string wrong : {"tab", "tab", "New"}) {
        store.set("open-finder-behavior", {wrong});
        EXPECT_EQ(list.selected(), Preferences::OpenInFinder::existing);
    }
    const std::string line = "quillon: the setting \"open-finder-behavior\" holds \"";
    const std::string end = "\", which is none of its values: \"new\" \"existing\"; the former "
                            "choice stays in force\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + "tab" + end + line + "New" + end);
    const std::vector<WrongChoice> wrong = {{"open-finder-behavior", "New", {"new", "existing"}}};
    EXPECT_EQ(preferences.wrongChoices(), wrong);
    store.set("open-finder-behavior", {"new"});
    EXPECT_EQ(list.selected(), Preferences::OpenInFinder::newWindow);
}

TEST(PreferencesSelectListDeathTest, endsTheProgramWhereNoChoiceIsKnown)
{
    FakeDefaultsStore store;
    store.set("quick-search-behavior", {"Open"});
    Preferences preferences(store);
    EXPECT_EXIT(preferences.quickSearchBehavior.selected(), testing::ExitedWithCode(1),
                "\"quick-search-behavior\" holds \"Open\".*\"open\" \"select\"");
    EXPECT_DEATH(preferences.quickSearchBehavior.select(Preferences::OpenInFinder::newWindow),
                 "one of its list");
}

TEST(Preferences, standUnderTheirKeys)
{
    FakeDefaultsStore store;
    Preferences preferences(store);
    EXPECT_EQ(preferences.quickSearchBehavior.selected().title, "Open in Default App");
    EXPECT_TRUE(preferences.quickSearchBehavior.select(Preferences::QuickSearchBehavior::select));
    EXPECT_EQ(preferences.quickSearchBehavior.selected().title, "Show in Finder");
    EXPECT_EQ(store.string("quick-search-behavior"), "select");
    EXPECT_FALSE(preferences.finderQuickSearch.value());
    EXPECT_TRUE(preferences.finderQuickSearch.set(true));
    EXPECT_EQ(store.boolean("finder-quick-search"), true);
    EXPECT_TRUE(preferences.enableBetaUpdates.set(true));
    EXPECT_EQ(store.boolean("enable-beta-updates"), true);
}

} // namespace
} // namespace quillon
