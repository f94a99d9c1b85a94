#include "app/widgets/FormTabView.h"

#include "app/widgets/PanelMetrics.h"

#include <QPainter>
#include <QTabBar>

#include <algorithm>

namespace quillon {

namespace {

constexpr int TAB_SIDE = 12;
constexpr int HEIGHT = 36;
constexpr int UNDERLINE = 2;

} // namespace

class FormTabView::Bar : public QTabBar
{
public:
    using QTabBar::QTabBar;

    void setPanelPalette(const PanelPalette &palette)
    {
        palette_ = palette;
        update();
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        const QString words = tabText(index).remove(u'&');
        return {fontMetrics().horizontalAdvance(words) + 2 * TAB_SIDE,
                std::max(HEIGHT, fontMetrics().height() + 2 * metrics::INSET)};
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int index = 0; index < count(); ++index) {
            const QRect tab = tabRect(index);
            const bool isInFront = index == currentIndex();
            if (isInFront && hasFocus()) {
                painter.setPen(Qt::NoPen);
                painter.setBrush(palette_.tint);
                painter.drawRoundedRect(tab.adjusted(0, 4, 0, -4 - UNDERLINE), metrics::ROW_CORNER,
                                        metrics::ROW_CORNER);
            }
            painter.setPen(isInFront ? palette_.text : palette_.quiet);
            painter.drawText(tab, Qt::AlignCenter | Qt::TextShowMnemonic, tabText(index));
            if (isInFront)
                painter.fillRect(tab.left() + TAB_SIDE, tab.bottom() + 1 - UNDERLINE,
                                 tab.width() - 2 * TAB_SIDE, UNDERLINE, palette_.accent);
        }
    }

private:
    PanelPalette palette_ = PanelPalette::light();
};

/// The space before the first tab. The tabs ask only for its size hint, and a plain widget has
/// none.
class FormTabView::Space : public QWidget
{
public:
    using QWidget::QWidget;

    QSize sizeHint() const override { return {metrics::FORM_MARGIN - TAB_SIDE, HEIGHT}; }
};

FormTabView::FormTabView(QWidget *parent) : QTabWidget(parent), bar_(new Bar)
{
    bar_->setDrawBase(false);
    bar_->setExpanding(false);
    setTabBar(bar_);
    setDocumentMode(true);
    // The first word begins where the forms begin.
    setCornerWidget(new Space(this), Qt::TopLeftCorner);
}

void FormTabView::setPanelPalette(const PanelPalette &palette)
{
    bar_->setPanelPalette(palette);
}

} // namespace quillon
