#pragma once

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>
#include <QTabBar>

#include <algorithm>

namespace quillon {

/// Returns the texts of the visible controls whose mnemonics other ones have too, so that Alt with
/// the letter would carry out neither.
inline QStringList contestedMnemonics(const QWidget &window)
{
    QStringList texts;
    for (const auto *label : window.findChildren<QLabel *>())
        if (label->isVisible() && label->buddy() != nullptr)
            texts << label->text();
    for (const auto *button : window.findChildren<QAbstractButton *>())
        if (button->isVisible())
            texts << button->text();
    for (const auto *bar : window.findChildren<QTabBar *>())
        for (int tab = 0; bar->isVisible() && tab < bar->count(); ++tab)
            texts << bar->tabText(tab);
    QStringList contested;
    for (const QString &text : texts) {
        const QKeySequence keys = QKeySequence::mnemonic(text);
        const auto has = [&keys](const QString &other) {
            return QKeySequence::mnemonic(other) == keys;
        };
        if (!keys.isEmpty() && std::ranges::count_if(texts, has) > 1)
            contested << text;
    }
    return contested;
}

} // namespace quillon
