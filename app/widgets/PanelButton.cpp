#include "app/widgets/PanelButton.h"

#include "app/widgets/FormDrawing.h"
#include "app/widgets/PanelMetrics.h"

#include <QPainter>

namespace quillon {

namespace {

/// Sizes of a rank, without the font's part.
struct Measures
{
    int height;
    /// Above and below a text that needs more height than that.
    int around;
    /// Beside the text.
    int side;
    int narrowest;
    double corner;
    /// The gap between the button and the ring around it that shows the focus; on its edge when
    /// there is none.
    int ring;
};

constexpr Measures IN_A_WINDOW{.height = 36,
                               .around = 12,
                               .side = 20,
                               .narrowest = 96,
                               .corner = metrics::ROW_CORNER,
                               .ring = 3};
constexpr Measures IN_A_FORM{.height = metrics::FORM_CONTROL_HEIGHT,
                             .around = 8,
                             .side = 16,
                             .narrowest = 80,
                             .corner = metrics::FORM_CONTROL_CORNER,
                             .ring = 0};

constexpr const Measures &measures(PanelButton::Rank rank)
{
    return rank == PanelButton::Rank::control ? IN_A_FORM : IN_A_WINDOW;
}

/// The room of the arrow that says there is a menu.
constexpr int BUTTON_ARROW_ROOM = 16;

} // namespace

PanelButton::PanelButton(const QString &text, Rank rank, QWidget *parent)
    : QPushButton(text, parent), rank_(rank)
{
    setAttribute(Qt::WA_Hover);
    // Return presses the button that has the focus, outside of dialogs as well.
    setAutoDefault(true);
}

void PanelButton::setPanelPalette(const PanelPalette &palette)
{
    palette_ = palette;
    update();
}

QSize PanelButton::sizeHint() const
{
    const Measures &rank = measures(rank_);
    const QString words = QString(text()).remove(u'&');
    const int width = fontMetrics().horizontalAdvance(words) + 2 * rank.side +
                      (menu() == nullptr ? 0 : BUTTON_ARROW_ROOM);
    const int height = (fontMetrics().height() + rank.around + 3) / 4 * 4;
    // A sign alone needs no more than itself.
    const int narrowest = words.size() == 1 ? 0 : rank.narrowest;
    return {std::max(width, narrowest) + 2 * rank.ring,
            std::max(height, rank.height) + 2 * rank.ring};
}

QRectF PanelButton::body() const
{
    const int ring = measures(rank_).ring;
    return QRectF(rect()).adjusted(ring, ring, -ring, -ring);
}

QColor PanelButton::fill() const
{
    const QColor color = rank_ == Rank::primary ? palette_.accent : palette_.keyCap;
    if (isDown())
        return pressedTone(color, palette_.isDark());
    return underMouse() ? hoveredTone(color, palette_.isDark()) : color;
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : metrics::DISABLED_OPACITY);
    const Measures &rank = measures(rank_);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill());
    painter.drawRoundedRect(body(), rank.corner, rank.corner);
    if (hasFocus())
        paintFocusRing(painter, rect(), rank.corner + rank.ring, palette_.accent);
    painter.setPen(rank_ == Rank::primary ? palette_.background : palette_.text);
    QRectF words = body();
    if (menu() != nullptr) {
        words.setRight(words.right() - BUTTON_ARROW_ROOM);
        paintMenuArrow(painter,
                       {body().right() - rank.side, body().center().y() + MENU_ARROW_WIDTH / 4});
    }
    painter.drawText(words, Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

} // namespace quillon
