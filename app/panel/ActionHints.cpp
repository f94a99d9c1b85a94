#include "app/panel/ActionHints.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace quillon {

namespace {

/// The kinds are named in the stored texts for another system; these are the words shown here.
struct Words
{
    const ActionType &type;
    const char *shortly;
    /// Whole, with the target in place of %1.
    const char *fully;
};

QString translated(const char *text)
{
    return QCoreApplication::translate("ActionHints", text);
}

QString keysOf(ActionShortcutFlags flags)
{
    QStringList keys;
    if (flags.command)
        keys << translated(QT_TRANSLATE_NOOP("ActionHints", "Ctrl"));
    if (flags.option)
        keys << translated(QT_TRANSLATE_NOOP("ActionHints", "Alt"));
    if (flags.shift)
        keys << translated(QT_TRANSLATE_NOOP("ActionHints", "Shift"));
    keys << translated(QT_TRANSLATE_NOOP("ActionHints", "Return"));
    return keys.join(u' ');
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
         QT_TRANSLATE_NOOP("ActionHints", "Open with the application “%1”")},
        {ActionType::executeShellCommand, "%1", QT_TRANSLATE_NOOP("ActionHints", "Run %1")},
    };
    const QString target = QString::fromStdString(action.actionTarget.key());
    const auto *words = std::ranges::find_if(
        known, [&action](const Words &each) { return each.type == action.actionType; });
    if (words == std::end(known))
        return {.key = keysOf(action.flags),
                .meaning = translated(QT_TRANSLATE_NOOP("ActionHints", "Nothing")),
                .toolTip = {}};
    // A program is known by its name, wherever it stands.
    const QString name =
        action.actionType == ActionType::executeShellCommand ? target.section(u'/', -1) : target;
    return {.key = keysOf(action.flags),
            .meaning = translated(words->shortly).replace(u"%1"_qs, name),
            .toolTip = translated(words->fully).replace(u"%1"_qs, target)};
}

} // namespace

std::vector<PanelFooter::Hint> actionHints(const std::vector<ActionModel> &actions)
{
    std::vector<PanelFooter::Hint> hints;
    std::vector<ActionShortcutFlags> bound;
    for (const ActionModel &action : actions) {
        if (std::ranges::find(bound, action.flags) != bound.end())
            continue;
        bound.push_back(action.flags);
        hints.push_back(hintFor(action));
    }
    return hints;
}

} // namespace quillon
