#pragma once

#include "app/widgets/PanelPalette.h"

#include <QRect>
#include <QStyle>

class QPainter;

namespace quillon {

/// The background of a row: a rounded tint below the selected one, a quieter one below the pointer.
struct LightningTableRowBackgroundView
{
    static void paint(QPainter &painter, const QRect &row, const PanelPalette &palette,
                      QStyle::State state);
};

} // namespace quillon
