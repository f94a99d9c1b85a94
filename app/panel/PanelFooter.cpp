#include "app/panel/PanelFooter.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

/// The gap between two hints, and before the status.
constexpr int HINT_GAP = 20;
/// The space beside the text on a key cap, and between the cap and its meaning.
constexpr int CAP_INSET = 8;
constexpr int CAP_GAP = 8;
constexpr int CAP_CORNER = 4;

} // namespace

PanelFooter::PanelFooter(QWidget *parent) : QWidget(parent)
{
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    setFont(small);
    setMouseTracking(true);
    setFixedHeight(std::max(metrics::FOOTER_HEIGHT, (fontMetrics().height() + 19) / 4 * 4));
}

void PanelFooter::setHints(std::vector<Hint> hints)
{
    hints_ = std::move(hints);
    update();
}

void PanelFooter::setHeldKeys(ActionShortcutFlags flags)
{
    const auto held = flags == ActionShortcutFlags{} ? std::nullopt : std::optional(flags);
    if (held == held_)
        return;
    held_ = held;
    update();
}

void PanelFooter::setStatus(const QString &status)
{
    if (status == status_)
        return;
    status_ = status;
    tellScreenReaders();
    update();
}

void PanelFooter::setNotice(const QString &notice, const QString &toolTip)
{
    notice_ = notice;
    noticeToolTip_ = toolTip;
    tellScreenReaders();
    update();
}

void PanelFooter::tellScreenReaders()
{
    setAccessibleName(words());
    setAccessibleDescription(noticeToolTip_);
}

QRect PanelFooter::line() const
{
    return rect().adjusted(metrics::EDGE, 1, -metrics::EDGE, 0);
}

int PanelFooter::wordsLeft() const
{
    return line().right() - fontMetrics().horizontalAdvance(words());
}

QRect PanelFooter::wordsPlace() const
{
    QRect place = line();
    place.setLeft(wordsLeft());
    return QStyle::visualRect(layoutDirection(), rect(), place);
}

PanelFooter::Place PanelFooter::place(const Hint &hint, int left) const
{
    // All texts have a rectangle of the same height, so that they share a base line.
    QRect key = line();
    key.moveLeft(left);
    key.setWidth(fontMetrics().horizontalAdvance(hint.key) + 2 * CAP_INSET);
    QRect meaning = key;
    meaning.moveLeft(key.left() + key.width() + CAP_GAP);
    meaning.setWidth(fontMetrics().horizontalAdvance(hint.meaning));
    return {.hint = hint, .key = key, .meaning = meaning};
}

std::vector<PanelFooter::Place> PanelFooter::places() const
{
    const int end = wordsLeft() - HINT_GAP;
    bool areAll = true;
    std::vector<Place> places = placesUpTo(end, areAll);
    if (!areAll) {
        const int dots = place(more_, 0).key.width();
        places = placesUpTo(end - dots - HINT_GAP, areAll);
        const int left =
            places.empty() ? line().left() : places.back().meaning.right() + 1 + HINT_GAP;
        if (left + dots <= end)
            places.push_back(place(more_, left));
    }
    for (Place &place : places) {
        place.key = QStyle::visualRect(layoutDirection(), rect(), place.key);
        place.meaning = QStyle::visualRect(layoutDirection(), rect(), place.meaning);
    }
    return places;
}

/// Returns the hints for which there is room up to the end. Sets areAll to whether these are all
/// hints.
std::vector<PanelFooter::Place> PanelFooter::placesUpTo(int end, bool &areAll) const
{
    // Room for the hint of the held keys is reserved while the hints before it are laid out.
    const auto held = std::ranges::find_if(hints_, [this](const Hint &h) { return isHeld(h); });
    const int reserved = held == hints_.end() ? 0 : place(*held, HINT_GAP).meaning.right() + 1;
    end -= reserved;
    std::vector<Place> places;
    int left = line().left();
    bool isFull = false;
    for (const Hint &hint : hints_) {
        if (isHeld(hint))
            end += reserved;
        else if (isFull)
            continue;
        const Place next = place(hint, left);
        isFull = next.meaning.right() > end;
        if (isFull)
            continue;
        places.push_back(next);
        left = next.meaning.right() + 1 + HINT_GAP;
    }
    areAll = places.size() == hints_.size();
    return places;
}

bool PanelFooter::isOnMore(QPoint position) const
{
    const std::vector<Place> shown = places();
    return !shown.empty() && &shown.back().hint == &more_ && shown.back().key.contains(position);
}

bool PanelFooter::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto &help = static_cast<QHelpEvent &>(*event);
    QToolTip::hideText();
    for (const Place &place : places()) {
        const QRect area = place.key.united(place.meaning);
        if (area.contains(help.pos()))
            QToolTip::showText(help.globalPos(), place.hint.toolTip, this, area);
    }
    if (!notice_.isEmpty() && wordsPlace().contains(help.pos()))
        QToolTip::showText(help.globalPos(), noticeToolTip_, this, wordsPlace());
    return true;
}

void PanelFooter::mouseMoveEvent(QMouseEvent *event)
{
    if ((!notice_.isEmpty() && wordsPlace().contains(event->pos())) || isOnMore(event->pos()))
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
    event->ignore();
}

void PanelFooter::mousePressEvent(QMouseEvent *event)
{
    const bool isOnNotice = !notice_.isEmpty() && wordsPlace().contains(event->pos());
    const bool isOnDots = isOnMore(event->pos());
    event->setAccepted(isOnNotice || isOnDots);
    if (isOnNotice)
        Q_EMIT noticeClicked();
    else if (isOnDots)
        Q_EMIT moreClicked();
}

void PanelFooter::paintEvent(QPaintEvent *)
{
    const PanelPalette tones = PanelPalette::of(palette());
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, tones.hairline);
    painter.setPen(notice_.isEmpty() ? tones.quiet : tones.fault);
    painter.drawText(line(), Qt::AlignRight | Qt::AlignVCenter, words());

    const int capHeight = fontMetrics().height() + 4;
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Place &place : places()) {
        const QRectF cap(place.key.left(), line().top() + (line().height() - capHeight) / 2.0,
                         place.key.width(), capHeight);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isHeld(place.hint) ? tones.tint : tones.keyCap);
        painter.drawRoundedRect(cap, CAP_CORNER, CAP_CORNER);
        painter.setPen(tones.text);
        painter.drawText(place.key, Qt::AlignCenter | Qt::TextForceLeftToRight, place.hint.key);
        painter.setPen(isHeld(place.hint) ? tones.text : tones.quiet);
        painter.drawText(place.meaning, Qt::AlignLeft | Qt::AlignVCenter, place.hint.meaning);
    }
}

} // namespace quillon
