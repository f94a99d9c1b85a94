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
/// Between the edge of the panel and the tint of a row.
constexpr int INSET = 8;
constexpr int ROW_CORNER = 8;
constexpr int ICON = 24;
/// Where icons begin, and the text after them.
constexpr int ICON_LEFT = 20;
constexpr int TEXT_LEFT = 56;
constexpr int EDGE = 20;

/// A row is 40 high; fonts too large for that get the next multiple of 4 that holds them.
inline int rowHeight(const QFontMetrics &font)
{
    const int wanted = font.height() + 16;
    return wanted <= 40 ? 40 : (wanted + 3) / 4 * 4;
}

} // namespace metrics

} // namespace quillon
