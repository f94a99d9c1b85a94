#pragma once

#include "app/widgets/PanelPalette.h"

#include <QRect>

class QPainter;

namespace quillon {

/// The ground of a row: a rounded tint below the selected one, nothing below the others.
struct LightningTableRowBackgroundView
{
    static void paint(QPainter &painter, const QRect &row, const PanelPalette &palette,
                      bool isSelected);
};

} // namespace quillon
