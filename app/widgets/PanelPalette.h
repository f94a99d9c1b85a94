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
    /// The colour below the selected row.
    QColor tint;
    QColor accent;
    QColor hairline;
    /// The colour behind the name of a key.
    QColor keyCap;
    /// The colour of a text that says what is wrong.
    QColor fault;

    /// The role of faults in the palette of the widgets. No window has links that were visited, so
    /// theirs is free.
    static constexpr QPalette::ColorRole FAULT = QPalette::LinkVisited;

    static PanelPalette light();
    static PanelPalette dark();
    /// Returns the desktop's own colours where it sets any, and those of light() or dark()
    /// otherwise.
    static PanelPalette forDesktop(const QPalette &desktop, bool prefersDark);

    /// Returns the tones from which controlsPalette() made the palette of the widgets.
    static PanelPalette of(const QPalette &widgets);

    bool isDark() const;
    /// Returns the palette of all widgets: texts, buttons, fields, menus and their disabled states.
    QPalette controlsPalette() const;
};

/// Returns the contrast of two colours as WCAG defines it, from 1 (none) to 21 (black on white).
double contrast(const QColor &a, const QColor &b);

} // namespace quillon
