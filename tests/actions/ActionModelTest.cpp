#include "actions/ActionModel.h"

#include <gmock/gmock.h>

namespace quillon {
namespace {

using testing::ElementsAre;

TEST(ActionShortcutFlags, haveTitlesThatReadBack)
{
    std::vector<std::string> titles;
    for (const ActionShortcutFlags flags : allShortcutFlags()) {
        titles.push_back(flags.title());
        EXPECT_EQ(flagsFromShortcutTitle(flags.title()), flags) << flags.title();
    }
    EXPECT_THAT(titles, ElementsAre("Return", "⌘-Return", "⇧-Return", "⌥-Return", "⇧-⌘-Return",
                                    "⌥-⇧-Return"));
    const ActionShortcutFlags all{.option = true, .shift = true, .command = true};
    EXPECT_EQ(all.title(), "⌥-⇧-⌘-Return") << "also what is never offered has a title";
    EXPECT_EQ(flagsFromShortcutTitle("⌘ and then ⌥"),
              (ActionShortcutFlags{.option = true, .command = true}));
    EXPECT_EQ(flagsFromShortcutTitle("Ctrl+Alt"), ActionShortcutFlags{});
}

TEST(ActionType, isKnownByItsKeyAlone)
{
    std::vector<std::string> keys;
    for (const ActionType &type : ActionType::all)
        keys.push_back(type.key() + (type.requiresTarget() ? "+" : ""));
    EXPECT_THAT(keys, ElementsAre("Open in Default App", "Show in Finder", "Show Parent in Finder",
                                  "Copy Path to Clipboard", "Open Application+",
                                  "Execute Shell Command+"));
    EXPECT_EQ(ActionType("Show in Finder", true), ActionType::showInFinder);
    EXPECT_NE(ActionType("show in finder", false), ActionType::showInFinder);
}

TEST(ActionTarget, takesWhatTheUserTyped)
{
    EXPECT_EQ(ActionTarget::fromText(""), std::nullopt);
    EXPECT_EQ(ActionTarget::fromText(" no such app ")->key(), " no such app ");
    EXPECT_EQ(ActionTarget::fromText("the selected row"), ActionTarget::selectedRow);
}

TEST(ActionModel, isEqualByKeysKindAndTarget)
{
    const ActionModel action{.flags = {.shift = true},
                             .actionType = ActionType::openApplication,
                             .actionTarget = ActionTarget("gimp")};
    ActionModel other = action;
    other.actionType = ActionType(ActionType::openApplication.key(), false);
    EXPECT_EQ(action, other);
    other.flags.command = true;
    EXPECT_NE(action, other);
    other = action;
    other.actionTarget = ActionTarget("Gimp");
    EXPECT_NE(action, other);
}

TEST(ActionModel, describesItselfInRunsOfText)
{
    const ActionModel action{.flags = {.option = true, .shift = true},
                             .actionType = ActionType::openApplication,
                             .actionTarget = ActionTarget("Terminal")};
    EXPECT_THAT(action.description(),
                ElementsAre(TextRun{"⌥-⇧-Return", true}, TextRun{" will ", false},
                            TextRun{"Open Application", true}, TextRun{" with ", false},
                            TextRun{"Terminal", false}));
}

} // namespace
} // namespace quillon
