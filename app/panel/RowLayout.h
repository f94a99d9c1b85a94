#pragma once

#include "app/panel/RowText.h"
#include "app/widgets/PanelPalette.h"

#include <QFont>
#include <QTextLayout>

namespace quillon {

/// One line of a row's text: the parents of a path quiet, its last component normal, matches bold.
/// A text too long for the width loses as much of its beginning as it must and shows an ellipsis
/// there. Matched characters of the parents stay in view as long as those between them can go.
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
    void fit(RowText row, qreal ellipsis, const PanelPalette &palette, qreal room);
    int cutPosition(const RowText &row, int from, int to, qreal ellipsis, qreal room) const;

    QTextLayout layout_;
};

} // namespace quillon
