#pragma once

#include "app/widgets/PanelPalette.h"
#include "results/RowText.h"

#include <QFont>
#include <QTextLayout>

namespace quillon {

/// One line of a row's text, with the parents of a path quiet, its last component normal and
/// matches bold. If the text is too long for the width, as much of its beginning as necessary is
/// replaced by an ellipsis. Matched characters of the parents stay in view as long as those between
/// them can be cut.
class RowLayout
{
public:
    RowLayout(const RowText &row, const QFont &font, const PanelPalette &palette, qreal width);

    /// Returns the text that is drawn, including the ellipsis.
    QString text() const { return layout_.text(); }
    qreal width() const;
    /// Draws the line in the middle of the area's height, beginning at its left edge.
    void draw(QPainter &painter, const QRectF &area) const;

private:
    void arrange(const RowText &row, const PanelPalette &palette);
    void fit(RowText row, qreal ellipsis, const PanelPalette &palette, qreal room);
    int cutPosition(const RowText &row, int from, int to, qreal ellipsis, qreal excess) const;
    qreal widthOf(int from, int to) const;

    QTextLayout layout_;
};

} // namespace quillon
