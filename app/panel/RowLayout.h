#pragma once

#include "app/panel/RowText.h"
#include "app/widgets/PanelPalette.h"

#include <QFont>
#include <QTextLayout>

namespace quillon {

/// One line of a row's text: the parents of a path quiet, its last component normal, matches bold.
/// A text too long for the width loses its beginning, at a "/" where that leaves the whole last
/// component, and shows an ellipsis there.
class RowLayout
{
public:
    RowLayout(const RowText &row, const QFont &font, const PanelPalette &palette, qreal width);

    /// What is drawn, the ellipsis included.
    QString text() const { return layout_.text(); }
    qreal width() const;
    /// Draws the line in the middle of the height, starting at the left of the area.
    void draw(QPainter &painter, const QRectF &area) const;

private:
    void arrange(const RowText &row, const PanelPalette &palette);

    QTextLayout layout_;
};

} // namespace quillon
