#include "app/panel/ActionHints.h"

#include "actions/ActionRunner.h"
#include "app/widgets/KeyNames.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillon {

namespace {

/// The stored texts name the kinds for another system. These are the words shown here.
struct Words
{
    const ActionType &type;
    const char *shortly;
    /// The whole text, with the target in place of %1.
    const char *fully;
    /// The text in a menu, if it is neither of the two.
    const char *inMenu = nullptr;
};

QString translated(const char *text)
{
    return QCoreApplication::translate("ActionHints", text);
}

PanelFooter::Hint hintFor(const ActionModel &action)
{
    const Words known[] = {
        {ActionType::openInDefaultApp, QT_TRANSLATE_NOOP("ActionHints", "Open"),
         QT_TRANSLATE_NOOP("ActionHints", "Open with the default application")},
        {ActionType::showInFinder, QT_TRANSLATE_NOOP("ActionHints", "Show"),
         QT_TRANSLATE_NOOP("ActionHints", "Show in the file manager")},
        {ActionType::showParentInFinder, QT_TRANSLATE_NOOP("ActionHints", "Show parent"),
         QT_TRANSLATE_NOOP("ActionHints", "Show in the parent folder, in the file manager")},
        {ActionType::copyPathToClipboard, QT_TRANSLATE_NOOP("ActionHints", "Copy path"),
         QT_TRANSLATE_NOOP("ActionHints", "Copy the path to the clipboard")},
        {ActionType::openApplication, "%1",
         QT_TRANSLATE_NOOP("ActionHints", "Open with the application “%1”"),
         QT_TRANSLATE_NOOP("ActionHints", "Open in %1")},
        {ActionType::executeShellCommand, "%1", QT_TRANSLATE_NOOP("ActionHints", "Run %1"),
         QT_TRANSLATE_NOOP("ActionHints", "Run %1")},
    };
    PanelFooter::Hint hint{.flags = action.flags, .key = keyNames(action.flags, u' ')};
    const QString target = QString::fromStdString(action.actionTarget.key());
    const auto *words = std::ranges::find_if(
        known, [&action](const Words &each) { return each.type == action.actionType; });
    if (words == std::end(known)) {
        hint.meaning = translated(QT_TRANSLATE_NOOP("ActionHints", "Nothing"));
        return hint;
    }
    // A program is shown by its name, wherever it is.
    const QString name =
        action.actionType == ActionType::executeShellCommand ? target.section(u'/', -1) : target;
    hint.meaning = translated(words->shortly).replace(QStringLiteral("%1"), name);
    hint.toolTip = translated(words->fully).replace(QStringLiteral("%1"), target);
    if (words->inMenu != nullptr)
        hint.menuText = translated(words->inMenu).replace(QStringLiteral("%1"), name);
    return hint;
}

} // namespace

std::vector<PanelFooter::Hint> actionHints(const std::vector<ActionModel> &actions)
{
    std::vector<PanelFooter::Hint> hints;
    for (const ActionModel &action : actions)
        if (std::ranges::find(hints, action.flags, &PanelFooter::Hint::flags) == hints.end())
            hints.push_back(hintFor(action));
    return hints;
}

std::vector<PanelFooter::Hint> rowHints(const std::vector<ActionModel> &actions,
                                        const ActionRunner &runner, const SearchBaseResult &row)
{
    if (row.type() != SearchBaseResultType::inFrontFinder)
        return actionHints(actions);
    auto bound = std::ranges::find(actions, ActionShortcutFlags{}, &ActionModel::flags);
    if (bound == actions.end())
        bound = actions.begin();
    if (bound == actions.end())
        return {};
    const ActionType type = runner.typeFor(*bound, row);
    PanelFooter::Hint hint = hintFor({bound->flags, type, ActionTarget::selectedRow});
    if (type == ActionType::showParentInFinder) {
        hint.meaning = translated(QT_TRANSLATE_NOOP("ActionHints", "Select"));
        hint.toolTip =
            translated(QT_TRANSLATE_NOOP("ActionHints", "Select in the file manager window"));
    }
    return {hint};
}

} // namespace quillon
