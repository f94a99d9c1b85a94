#pragma once

#include "app/panel/PanelFooter.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

class QMenu;

namespace quillon {

class SearchPanelDelegate;
class SearchPanelView;

/// The menus that come up over the panel, one at a time, in its tones. They do not wait for the
/// user's choice.
class PanelMenus : public QObject
{
    Q_OBJECT

public:
    PanelMenus(SearchPanelView &view, SearchPanelDelegate &delegate);

    struct Entry
    {
        QString text;
        std::function<void()> choose;
        /// The keys that do the same, as QLNShortcut writes them, if there are any.
        std::string_view keys = {};
        /// Whether the entry has a check mark, for one that can have one.
        std::optional<bool> isChecked = {};
    };

    /// The menu at the menu button: preferences, rebuild, keys, feedback, updates, quit.
    void showMain();
    /// What can be done with a row: the actions by their hints, and below them the rest.
    /// Chosen gets the keys of the action.
    void showForRow(const std::vector<PanelFooter::Hint> &hints, const std::vector<Entry> &others,
                    QPoint globalPosition, const std::function<void(ActionShortcutFlags)> &chosen);
    /// The field's own: cut, copy, paste.
    void showForField(QPoint globalPosition);
    void close();

private:
    /// Shows the menu with the corner there where its first line begins.
    void show(std::unique_ptr<QMenu> menu, QPoint globalPosition);

    SearchPanelView &view_;
    SearchPanelDelegate &delegate_;
    QPointer<QMenu> open_;
};

} // namespace quillon
