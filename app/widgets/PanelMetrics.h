#pragma once

#include <QFontMetrics>

#include <algorithm>

namespace quillon {

/// The measures of the panel in device-independent pixels, all on a grid of 4.
namespace metrics {

constexpr int WIDTH = 720;
constexpr int CORNER = 12;
constexpr int FIELD_HEIGHT = 60;
constexpr int FOOTER_HEIGHT = 40;
constexpr int VISIBLE_ROWS = 8;
/// The gap between the edge of the panel and the tint of a row.
constexpr int INSET = 8;
constexpr int ROW_CORNER = 8;
constexpr int ICON = 24;
/// The places where icons begin, and the text after them.
constexpr int ICON_LEFT = 20;
constexpr int TEXT_LEFT = 56;
constexpr int EDGE = 20;

// The measures of forms follow.

/// The margin around a pane or a sheet.
constexpr int FORM_MARGIN = 28;
/// The gap between a control and the line about it.
constexpr int FORM_NEAR = 4;
/// The gaps between controls that belong together, and between those that do not.
constexpr int FORM_ROW = 12;
constexpr int FORM_GROUP = 24;
/// The labels of all panes end on one line.
constexpr int FORM_LABEL = 168;
/// The width of a text that reads well.
constexpr int FORM_TEXT = 400;
/// The least height of fields, buttons and menus.
constexpr int FORM_CONTROL_HEIGHT = 28;
constexpr int FORM_CONTROL_CORNER = 6;
/// The least width of buttons and menus, even if their texts are narrower.
constexpr int FORM_CONTROL = 220;
/// The space beside the word of a tab.
constexpr int TAB_SIDE = 12;
/// The space beside the words of a drop-down list.
constexpr int DROP_DOWN_SIDE = 12;

/// The gap between a box to tick and its words.
constexpr int TICK_BOX_WORDS = 8;

/// The opacity of controls that cannot be used at the moment.
constexpr double DISABLED_OPACITY = 0.5;

/// Returns 40, the usual height of a row. A font that is too large for that gets the next multiple
/// of 4 that holds it.
inline int rowHeight(const QFontMetrics &font)
{
    const int wanted = font.height() + 16;
    return wanted <= 40 ? 40 : (wanted + 3) / 4 * 4;
}

/// Returns the side of a box to tick: 16, or more beside the words of a large font.
inline int tickBox(const QFontMetrics &font)
{
    return std::max(16, font.height() * 3 / 8 * 2);
}

/// Returns the width of a text that reads well: this one, or more in a large font.
inline int textWidth(const QFontMetrics &font, int least)
{
    constexpr int LETTERS = 56;
    return std::max(least, font.averageCharWidth() * LETTERS);
}

/// Returns the width of a field for a path, which leaves room for a button beside it.
inline int fieldWidth(const QFontMetrics &font)
{
    return textWidth(font, FORM_TEXT) * 4 / 5;
}

} // namespace metrics

} // namespace quillon
