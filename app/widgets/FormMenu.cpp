#include "app/widgets/FormMenu.h"

#include "app/widgets/FormDrawing.h"
#include "app/widgets/PanelMetrics.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace quillon {

namespace {

constexpr int MENU_SIDE = 12;
constexpr int ARROW_ROOM = 24;
/// Letters are placed on whole pixels when they are drawn, which makes a long text wider by some
/// pixels than the font's measures say.
constexpr int ROUNDING = 8;

} // namespace

FormMenu::FormMenu(QWidget *parent) : QComboBox(parent)
{
    setAttribute(Qt::WA_Hover);
    setMinimumWidth(metrics::FORM_CONTROL);
}

QSize FormMenu::sizeHint() const
{
    QSize size = QComboBox::sizeHint();
    for (int index = 0; index < count(); ++index)
        size.setWidth(std::max(size.width(), fontMetrics().horizontalAdvance(itemText(index)) +
                                                 2 * MENU_SIDE + ARROW_ROOM + ROUNDING));
    return size;
}

void FormMenu::showPopup()
{
    // The style gives the tones of the desktop's menus to all that are not set on the list itself.
    QPalette tones = palette();
    tones.setResolveMask(~QPalette::ResolveMask{0});
    view()->setPalette(tones);
    view()->installEventFilter(this);
    QComboBox::showPopup();
}

bool FormMenu::eventFilter(QObject *watched, QEvent *event)
{
    // Escape closes the open list. Unless the list claims the key, it closes the window instead.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel))
        event->accept();
    return QComboBox::eventFilter(watched, event);
}

void FormMenu::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : metrics::DISABLED_OPACITY);
    const auto tone = [this](QPalette::ColorRole role) {
        return palette().color(QPalette::Active, role);
    };
    const QColor ground = tone(QPalette::Button);
    const QColor text = tone(QPalette::ButtonText);
    const bool isDark = ground.lightness() < text.lightness();
    constexpr double CORNER = metrics::FORM_CONTROL_CORNER;
    painter.setPen(Qt::NoPen);
    painter.setBrush(underMouse() && isEnabled() ? hoveredTone(ground, isDark) : ground);
    painter.drawRoundedRect(rect(), CORNER, CORNER);
    if (hasFocus())
        paintFocusRing(painter, rect(), CORNER, tone(QPalette::Link));
    painter.setPen(text);
    const QRect words = rect().adjusted(MENU_SIDE, 0, -MENU_SIDE - ARROW_ROOM, 0);
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(currentText(), Qt::ElideRight, words.width()));
    const QRectF area = rect();
    paintMenuArrow(painter, {area.right() - MENU_SIDE - MENU_ARROW_WIDTH / 2,
                             area.center().y() + MENU_ARROW_WIDTH / 4});
}

} // namespace quillon
