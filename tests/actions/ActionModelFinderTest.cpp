#include "actions/ActionModelFinder.h"

#include "platform/linux/settings/JsonDefaultsStore.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <ostream>

namespace quillon {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr const char *KEY = "qln-actions-list";

/// The built-in actions as they are stored.
constexpr const char *DEFAULTS =
    R"([{"flags":{"option":false,"shift":false,"command":false},)"
    R"("actionType":{"key":"Open in Default App","requiresTarget":false},)"
    R"("actionTarget":{"key":"the selected row"}},)"
    R"({"flags":{"option":false,"shift":false,"command":true},)"
    R"("actionType":{"key":"Show Parent in Finder","requiresTarget":false},)"
    R"("actionTarget":{"key":"the selected row"}},)"
    R"({"flags":{"option":true,"shift":false,"command":false},)"
    R"("actionType":{"key":"Copy Path to Clipboard","requiresTarget":false},)"
    R"("actionTarget":{"key":"the selected row"}},)"
    R"({"flags":{"option":true,"shift":true,"command":false},)"
    R"("actionType":{"key":"Open Application","requiresTarget":true},)"
    R"("actionTarget":{"key":"Terminal"}}])";

ActionModel openWith(ActionShortcutFlags flags, const char *application)
{
    return {.flags = flags,
            .actionType = ActionType::openApplication,
            .actionTarget = ActionTarget(application)};
}

std::vector<std::string> sentences(const std::vector<ActionModel> &actions)
{
    std::vector<std::string> sentences;
    for (const ActionModel &action : actions) {
        std::string sentence;
        for (const TextRun &run : action.description())
            sentence += run.text;
        sentences.push_back(sentence);
    }
    return sentences;
}

TEST(ActionModelFinder, beginsWithTheBuiltInActionsAndStoresNothing)
{
    FakeDefaultsStore store;
    ActionModelFinder finder(store);
    EXPECT_THAT(sentences(finder.loadActions()),
                ElementsAre("Return will Open in Default App with the selected row",
                            "⌘-Return will Show Parent in Finder with the selected row",
                            "⌥-Return will Copy Path to Clipboard with the selected row",
                            "⌥-⇧-Return will Open Application with Terminal"));
    EXPECT_THAT(finder.availableShortcutTitles(), ElementsAre("⇧-Return", "⇧-⌘-Return"));
    EXPECT_EQ(store.writes(), 0);
}

TEST(ActionModelFinder, writesTheMembersInTheirOrderAsReadableText)
{
    FakeDefaultsStore store;
    ActionModelFinder finder(store);
    EXPECT_TRUE(finder.saveActions(finder.loadActions()));
    EXPECT_EQ(store.value(KEY), DefaultsValue{std::string(DEFAULTS)});
}

/// A stored value, and the number of actions that are read from it. That number is four when the
/// built-in actions are used.
struct StoredRow
{
    const char *name;
    DefaultsValue stored;
    std::size_t count;
    const char *first = "Return will Open in Default App with the selected row";

    friend std::ostream &operator<<(std::ostream &out, const StoredRow &row)
    {
        return out << row.name;
    }
};

DefaultsValue data(const std::string &bytes)
{
    return {DefaultsData{bytes}};
}

std::string replaced(const std::string &before, const std::string &after)
{
    std::string text = DEFAULTS;
    const std::size_t place = text.find(before);
    EXPECT_NE(place, std::string::npos) << before;
    return text.replace(place, before.size(), after);
}

class StoredActions : public testing::TestWithParam<StoredRow>
{};

TEST_P(StoredActions, areReadWholeOrNotAtAll)
{
    const StoredRow &row = GetParam();
    FakeDefaultsStore store;
    store.set(KEY, row.stored);
    const ActionModelFinder finder(store);
    EXPECT_THAT(finder.loadActions(), SizeIs(row.count));
    EXPECT_EQ(sentences(finder.loadActions()).front(), row.first);
    EXPECT_EQ(store.value(KEY), row.stored);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StoredActions,
    testing::Values(
        StoredRow{"emptied", data("[]"), 1, "Return will Show in Finder with the selected row"},
        StoredRow{"byHand",
                  {R"([ { "actionTarget": { "key": "gimp" }, "note": "mine",
                          "actionType": { "requiresTarget": true, "key": "Open Application" },
                          "flags": { "shift": true, "command": false, "option": false } } ])"},
                  1,
                  "⇧-Return will Open Application with gimp"},
        StoredRow{"unknownKind", data(replaced("Open in Default App", "Sing")), 4,
                  "Return will Sing with the selected row"},
        StoredRow{"emptyTarget", data(replaced("the selected row", "")), 4,
                  "Return will Open in Default App with "},
        StoredRow{"noJson", data("[{"), 4}, StoredRow{"nothing", data(""), 4},
        StoredRow{"noUtf8", data(replaced("the selected row", "caf\xe9")), 4},
        StoredRow{"anObject", data("{}"), 4}, StoredRow{"aListOfOtherThings", data("[1, null]"), 4},
        StoredRow{"oneIncomplete", data(R"([{"flags":{}},)" + std::string(DEFAULTS).substr(1)), 4},
        StoredRow{"aFlagMissing", data(replaced(R"("shift":false,)", "")), 4},
        StoredRow{"aFlagAsNumber", data(replaced(R"("shift":false)", R"("shift":0)")), 4},
        StoredRow{"aKeyAsNumber", data(replaced(R"("the selected row")", "1")), 4},
        StoredRow{"noRequiresTarget", data(replaced(R"(,"requiresTarget":false)", "")), 4},
        StoredRow{"notData", DefaultsValue{DefaultsArray{}}, 4},
        StoredRow{"deepNonsense", data(std::string(100000, '[')), 4}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(ActionModelFinder, addsOnceAndRemovesEveryEqualAction)
{
    FakeDefaultsStore store;
    ActionModelFinder finder(store);
    EXPECT_TRUE(finder.addAction(openWith({.option = true, .shift = true}, "Terminal")));
    EXPECT_EQ(store.writes(), 0) << "a built-in one already";

    EXPECT_TRUE(finder.addAction(openWith({.shift = true}, "gimp")));
    EXPECT_TRUE(finder.addAction(openWith({.shift = true}, "krita")));
    ASSERT_THAT(finder.loadActions(), SizeIs(6));
    EXPECT_EQ(finder.loadActions().back(), openWith({.shift = true}, "krita"));
    EXPECT_THAT(finder.availableShortcutTitles(), ElementsAre("⇧-⌘-Return"));
    EXPECT_EQ(finder.actionFor({.shift = true}), openWith({.shift = true}, "gimp"))
        << "the first with these keys";

    auto actions = finder.loadActions();
    actions.insert(actions.begin(), openWith({.shift = true}, "gimp"));
    EXPECT_TRUE(finder.saveActions(actions));
    EXPECT_TRUE(finder.removeAction(openWith({.shift = true}, "gimp")));
    EXPECT_EQ(finder.actionFor({.shift = true}), openWith({.shift = true}, "krita"));
    EXPECT_EQ(finder.actionFor({.option = true, .command = true}), std::nullopt);
}

TEST(ActionModelFinder, storesEveryPathOfAProgramExactly)
{
    FakeDefaultsStore store;
    ActionModelFinder finder(store);
    for (const char *target :
         {"/opt/caf\xe9", "/opt/say \"hi\"\\\n\t", "/opt/%1%2", "/opt/\U0001F4C1"}) {
        const ActionModel action = openWith({.shift = true}, target);
        EXPECT_TRUE(finder.addAction(action));
        EXPECT_EQ(finder.loadActions().back(), action) << target;
    }
}

TEST(ActionModelFinder, readsAndWritesTheSettingsFileAsText)
{
    const TemporaryFolder folder;
    JsonDefaultsStore store(folder.path("quillon.json"));
    ActionModelFinder finder(store);
    EXPECT_TRUE(finder.addAction(openWith({.shift = true}, "a \"b\" ⌘")));
    EXPECT_NE(folder.readFile("quillon.json").find(R"(\"key\":\"a)"), std::string::npos)
        << folder.readFile("quillon.json");
    EXPECT_EQ(finder.loadActions().back(), openWith({.shift = true}, "a \"b\" ⌘"));

    folder.writeFile("quillon.json",
                     R"({"qln-actions-list": "[{\"actionTarget\":{\"key\":\"x\"},)"
                     R"(\"actionType\":{\"key\":\"k\",\"requiresTarget\":true},)"
                     R"(\"flags\":{\"option\":true,\"shift\":true,\"command\":true}}]"})");
    EXPECT_THAT(sentences(finder.loadActions()), ElementsAre("⌥-⇧-⌘-Return will k with x"));
}

} // namespace
} // namespace quillon
