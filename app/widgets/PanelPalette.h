#pragma once

#include <QColor>
#include <QPalette>

namespace quillon {

/// The colours of the panel. Text, quiet text and faults keep a contrast of 4.5 to 1 or better on
/// the background and on the tint.
struct PanelPalette
{
    QColor background;
    QColor text;
    QColor quiet;
    /// Below the selected row.
    QColor tint;
    QColor accent;
    QColor hairline;
    /// Behind the name of a key.
    QColor keyCap;
    /// The colour of a text that says what is wrong.
    QColor fault;

    static PanelPalette light();
    static PanelPalette dark();
    /// The desktop's own colours where it sets any; light() or dark() otherwise.
    static PanelPalette forDesktop(const QPalette &desktop, bool prefersDark);

    bool isDark() const;
    /// The palette of the toolkit's widgets inside the panel.
    QPalette widgetPalette() const;
    /// The palette of a whole window of the toolkit's controls: buttons, fields, menus and their
    /// disabled states.
    QPalette controlsPalette() const;
};

/// How well two colours are told apart: 1 (not) to 21 (black on white), as WCAG counts it.
double contrast(const QColor &a, const QColor &b);

} // namespace quillon
