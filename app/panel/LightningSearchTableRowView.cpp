#include "app/panel/LightningSearchTableRowView.h"

#include "app/panel/IconSource.h"
#include "app/panel/LightningTableRowBackgroundView.h"
#include "app/panel/PanelTexts.h"
#include "app/panel/RowLayout.h"
#include "app/panel/SearchResultsModel.h"
#include "app/widgets/PanelMetrics.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace quillon {

void LightningTableRowBackgroundView::paint(QPainter &painter, const QRect &row,
                                            const PanelPalette &palette, QStyle::State state)
{
    if (!(state & (QStyle::State_Selected | QStyle::State_MouseOver)))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(state.testFlag(QStyle::State_Selected) ? palette.tint : palette.keyCap);
    painter.drawRoundedRect(row.adjusted(metrics::INSET, 0, -metrics::INSET, 0),
                            metrics::ROW_CORNER, metrics::ROW_CORNER);
    painter.restore();
}

LightningSearchTableRowView::LightningSearchTableRowView(const SearchResultsModel &model,
                                                         IconSource &icons, std::string home,
                                                         QObject *parent)
    : QStyledItemDelegate(parent), model_(model), icons_(icons), home_(std::move(home))
{}

void LightningSearchTableRowView::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    const SearchBaseResultRef result = model_.result(index.row());
    if (!result)
        return;
    const QRect &row = option.rect;
    PanelPalette tones = PanelPalette::of(option.palette);
    LightningTableRowBackgroundView::paint(*painter, row, tones, option.state);

    const auto mirrored = [&option](const QRect &place) {
        return QStyle::visualRect(option.direction, option.rect, place);
    };
    const QRect icon(row.left() + metrics::ICON_LEFT,
                     row.top() + (row.height() - metrics::ICON) / 2, metrics::ICON, metrics::ICON);
    const bool isAway = !result->awayFolder().empty();
    painter->setOpacity(isAway ? metrics::DISABLED_OPACITY : 1.0);
    paintIcon(*painter, mirrored(icon), result->path());
    painter->setOpacity(1.0);

    QRect text = row.adjusted(metrics::TEXT_LEFT, 0, -metrics::EDGE, 0);
    if (const QString words = mark(*result); !words.isEmpty())
        text.setWidth(text.width() - paintMark(*painter, mirrored(text), option, words));
    if (isAway)
        tones.text = tones.quiet;
    const RowLayout line(rowText(*result, home_), option.font, tones, text.width());
    // A path reads from left to right, and begins beside its icon where there is room.
    QRectF place = mirrored(text);
    if (option.direction == Qt::RightToLeft)
        place.setLeft(place.right() - line.width());
    line.draw(*painter, place);
}

void LightningSearchTableRowView::paintIcon(QPainter &painter, const QRect &area,
                                            const std::string &path) const
{
    // Themes draw their small folders as bare outlines, even those for a finer screen. The coloured
    // ones begin at 32 pixels.
    constexpr int COLOURED = 48;
    const int size =
        std::max(COLOURED, qCeil(area.width() * painter.device()->devicePixelRatioF()));
    const QPixmap pixmap = icons_.icon(path).pixmap(QSize(size, size), 1.0);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(area, pixmap);
    painter.restore();
}

QString LightningSearchTableRowView::mark(const SearchBaseResult &result) const
{
    if (result.type() == SearchBaseResultType::inFrontFinder)
        return tr("front window");
    if (!result.awayFolder().empty())
        return tr("not there now · %1").arg(PanelTexts::diskName(result.awayFolder()));
    return model_.isKept(result) ? tr("kept on top") : QString();
}

int LightningSearchTableRowView::paintMark(QPainter &painter, const QRect &area,
                                           const QStyleOptionViewItem &option, const QString &mark)
{
    QFont small = option.font;
    small.setPointSizeF(option.font.pointSizeF() * 0.85);
    painter.setFont(small);
    painter.setPen(PanelPalette::of(option.palette).quiet);
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, mark);
    return QFontMetrics(small).horizontalAdvance(mark) + 16;
}

QSize LightningSearchTableRowView::sizeHint(const QStyleOptionViewItem &option,
                                            const QModelIndex &) const
{
    return {metrics::WIDTH, metrics::rowHeight(QFontMetrics(option.font))};
}

} // namespace quillon
