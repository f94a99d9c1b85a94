#include "app/panel/PanelMenus.h"

#include "app/panel/ActionHints.h"
#include "app/panel/MenuButton.h"
#include "app/panel/SearchPanelDelegate.h"
#include "app/panel/SearchPanelView.h"
#include "app/widgets/KeyNames.h"

#include <QLineEdit>
#include <QMenu>

#include <utility>

namespace quillon {

namespace {

/// The gap between the menu button and its menu.
constexpr int MENU_GAP = 4;
constexpr QLatin1String KEYS_COLUMN("      \t");

/// Returns the text of an entry with its keys, if it has any, on the right.
QString withKeys(const QString &text, std::string_view keys)
{
    return keys.empty() ? text : text + KEYS_COLUMN + keyNames(keys).join(u'+');
}

/// Returns a text that shows its ampersands.
QString literally(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

PanelMenus::PanelMenus(SearchPanelView &view, SearchPanelDelegate &delegate)
    : view_(view), delegate_(delegate)
{}

void PanelMenus::showMain()
{
    using Choice = void (SearchPanelDelegate::*)();
    auto menu = std::make_unique<QMenu>(&view_);
    const auto add = [&](const QString &text, Choice choose, std::string_view keys = {}) {
        connect(menu->addAction(withKeys(text, keys)), &QAction::triggered, this,
                [this, choose] { (delegate_.*choose)(); });
    };
    add(tr("Preferences…"), &SearchPanelDelegate::openPreferences, "Ctrl+,");
    add(tr("Rebuild Now"), &SearchPanelDelegate::rebuildSearchBase);
    add(tr("Keys"), &SearchPanelDelegate::showKeys, "F1");
    if (delegate_.takesFeedback())
        add(tr("Send Feedback…"), &SearchPanelDelegate::sendFeedback);
    if (delegate_.looksForUpdates())
        add(tr("Check for Updates…"), &SearchPanelDelegate::checkForUpdates);
    add(tr("Quit"), &SearchPanelDelegate::terminate, "Ctrl+Q");
    const MenuButton &button = view_.menuButton();
    // The menu ends where its button ends.
    const int width = menu->sizeHint().width();
    const QPoint below(view_.isRightToLeft() ? width : button.width() - width,
                       button.height() + MENU_GAP);
    show(std::move(menu), button.mapToGlobal(below));
    if (button.hasFocus())
        open_->setActiveAction(open_->actions().constFirst());
}

void PanelMenus::showForRow(const std::vector<PanelFooter::Hint> &hints,
                            const std::vector<Entry> &others, QPoint globalPosition,
                            const std::function<void(ActionShortcutFlags)> &chosen)
{
    auto menu = std::make_unique<QMenu>(&view_);
    for (const PanelFooter::Hint &hint : hints) {
        if (hint.toolTip.isEmpty())
            continue;
        // A menu shows the text after a tabulator on the right, without a gap of its own.
        const QString &words = hint.menuText.isEmpty() ? hint.meaning : hint.menuText;
        const QString text = literally(words) + KEYS_COLUMN + keyNames(hint.flags, u'+');
        connect(menu->addAction(text), &QAction::triggered, this,
                [chosen, flags = hint.flags] { chosen(flags); });
    }
    if (!menu->isEmpty() && !others.empty())
        menu->addSeparator();
    for (const Entry &entry : others) {
        QAction *action = menu->addAction(withKeys(entry.text, entry.keys));
        action->setCheckable(entry.isChecked.has_value());
        action->setChecked(entry.isChecked.value_or(false));
        connect(action, &QAction::triggered, this, entry.choose);
    }
    if (!menu->isEmpty())
        show(std::move(menu), globalPosition);
}

void PanelMenus::showForField(QPoint globalPosition)
{
    show(std::unique_ptr<QMenu>(view_.searchTextField().createStandardContextMenu()),
         globalPosition);
}

void PanelMenus::show(std::unique_ptr<QMenu> menu, QPoint globalPosition)
{
    close();
    open_ = menu.release();
    open_->setAttribute(Qt::WA_DeleteOnClose);
    const int leftwards = open_->isRightToLeft() ? open_->sizeHint().width() : 0;
    open_->popup(globalPosition - QPoint(leftwards, 0));
}

void PanelMenus::close()
{
    if (open_)
        open_->close();
}

} // namespace quillon
