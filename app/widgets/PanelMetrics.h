#pragma once

#include <QFontMetrics>

namespace quillon {

/// Measures of the panel in device-independent pixels; everything stands on a grid of 4.
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
/// Where icons begin, and the text after them.
constexpr int ICON_LEFT = 20;
constexpr int TEXT_LEFT = 56;
constexpr int EDGE = 20;

// These are the measures of forms.

/// Around a pane or a sheet.
constexpr int FORM_MARGIN = 28;
/// The gap between a control and the line about it.
constexpr int FORM_NEAR = 4;
/// The gaps between controls that belong together, and between those that do not.
constexpr int FORM_ROW = 12;
constexpr int FORM_GROUP = 24;
/// The labels of all panes end on one line.
constexpr int FORM_LABEL = 168;
/// A width that reads well.
constexpr int FORM_TEXT = 400;
/// The least height of fields, buttons and menus.
constexpr int FORM_CONTROL_HEIGHT = 28;
constexpr int FORM_CONTROL_CORNER = 6;
/// Buttons and menus are at least this wide, even if their texts are narrower.
constexpr int FORM_CONTROL = 220;

/// Controls that cannot be used now are drawn with this opacity.
constexpr double DISABLED_OPACITY = 0.5;

/// A row is 40 high; fonts too large for that get the next multiple of 4 that holds them.
inline int rowHeight(const QFontMetrics &font)
{
    const int wanted = font.height() + 16;
    return wanted <= 40 ? 40 : (wanted + 3) / 4 * 4;
}

} // namespace metrics

} // namespace quillon
