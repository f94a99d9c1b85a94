#include "app/panel/KeysView.h"

#include "app/widgets/KeyNames.h"
#include "app/widgets/QuillonStyle.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon {

namespace {

constexpr int ROW_GAP = 8;
constexpr int COLUMN_GAP = 24;

QString joined(std::string_view keys)
{
    return keyNames(keys).join(u'+');
}

} // namespace

KeysView::KeysView()
{
    QVBoxLayout *parts = column(this, APART, MARGIN);
    parts->addWidget(heading(tr("Keys"), this));
    QHBoxLayout *buttons = line(NEAR);
    buttons->addStretch();
    auto *close = pushButton(tr("&Close"), ButtonRank::primary, this);
    connect(close, &QPushButton::clicked, this, [this] { window()->close(); });
    buttons->addWidget(close);
    parts->addLayout(buttons);
    setFocusProxy(close);
}

void KeysView::showKeys(const std::vector<PanelFooter::Hint> &actions, const QStringList &panelKeys)
{
    delete table_;
    table_ = new QWidget(this);
    rows_ = new QGridLayout(table_);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setHorizontalSpacing(COLUMN_GAP);
    rows_->setVerticalSpacing(ROW_GAP);
    rows_->setColumnStretch(1, 1);

    if (!panelKeys.isEmpty())
        addRow(panelKeys.join(u'+'), tr("Show the panel, or hide it"));
    addRow(QStringLiteral("↑  ↓  %1  %2").arg(joined("PageUp"), joined("PageDown")),
           tr("Choose a row"));
    addRow(QStringLiteral("%1  %2").arg(joined("Home"), joined("End")),
           tr("Choose the first or the last row"));
    addGap();
    for (const PanelFooter::Hint &action : actions)
        addRow(keyNames(action.flags, u'+'),
               action.toolTip.isEmpty() ? action.meaning : action.toolTip);
    addRow(joined("Tab"), tr("Do the same as Return alone"));
    addRow(QStringLiteral("%1 – %2").arg(joined("Ctrl+1"), joined("Ctrl+9")),
           tr("Open one of the first nine rows"));
    addRow(QStringLiteral("%1, %2").arg(tr("Menu"), joined("Shift+F10")),
           tr("List what can be done with the row"));
    addRow(joined("Ctrl+D"), tr("Keep the row on top, or no longer"));
    addRow(joined("Shift+Delete"), tr("Forget the row’s uses and keep it on top no longer"));
    addGap();
    addRow(joined("F10"), tr("Go to the buttons"));
    addRow(joined("Ctrl+,"), tr("Open the preferences"));
    addRow(joined("F1"), tr("Show this page"));
    addRow(joined("Ctrl+Q"), tr("Quit Quillon"));
    addRow(joined("Esc"), tr("Close the panel"));
    static_cast<QVBoxLayout *>(layout())->insertWidget(1, table_);
}

void KeysView::addRow(const QString &keys, const QString &meaning)
{
    const int row = rows_->rowCount();
    QLabel *names = label(keys, QPalette::WindowText, table_);
    emphasise(names);
    rows_->addWidget(names, row, 0);
    rows_->addWidget(label(meaning, QPalette::WindowText, table_), row, 1);
}

void KeysView::addGap()
{
    rows_->setRowMinimumHeight(rows_->rowCount(), ROW_GAP);
}

bool KeysView::mayClose()
{
    Q_EMIT closed();
    return true;
}

} // namespace quillon
