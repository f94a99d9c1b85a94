#include "app/panel/SearchPanelView.h"

#include "app/panel/IconSource.h"
#include "app/panel/LightningSearchTableRowView.h"
#include "app/panel/MenuButton.h"
#include "app/panel/PanelFooter.h"
#include "app/panel/PanelMessage.h"
#include "app/panel/PanelSpeech.h"
#include "app/panel/SearchIndicator.h"
#include "app/panel/SearchResultsTable.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/QuillonStyle.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace quillon {

namespace {

/// QLineEdit reserves this space on the left of its text.
constexpr int FIELD_OWN_MARGIN = 2;
/// The least width and height of the button.
constexpr int UPDATE_BUTTON_WIDTH = 108;
constexpr int UPDATE_BUTTON_HEIGHT = 36;
/// The space on the right of the menu button, whose dots end where the texts below them end.
constexpr int MENU_BUTTON_EDGE = 12;
/// The message takes the room of so many rows.
constexpr int MESSAGE_ROWS = 5;

/// Shows which part of a list is visible: a slim mark in the inset beside the rows, which takes no
/// room from them. The wheel and the keys scroll the list.
class ScrollMark : public QWidget
{
public:
    explicit ScrollMark(QAbstractScrollArea *area) : QWidget(area), bar_(area->verticalScrollBar())
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        connect(bar_, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
        connect(bar_, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
        area->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QRect area = parentWidget()->rect();
        if (event->type() == QEvent::Resize)
            setGeometry(QStyle::visualRect(
                layoutDirection(), area,
                {area.width() - metrics::INSET, 0, metrics::INSET, area.height()}));
        return QWidget::eventFilter(watched, event);
    }

    void paintEvent(QPaintEvent *) override
    {
        const double all = bar_->maximum() - bar_->minimum() + bar_->pageStep();
        if (bar_->maximum() <= bar_->minimum())
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(PanelPalette::of(palette()).hairline);
        painter.drawRoundedRect(
            QRectF(2, bar_->value() / all * height(), 4, bar_->pageStep() / all * height()), 2, 2);
    }

private:
    QScrollBar *bar_;
};

} // namespace

SearchPanelView::SearchPanelView(IconSource &icons, QWidget *parent) : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buildHeader());
    column->addWidget(buildBody(icons));
    speech_ = std::make_unique<PanelSpeech>(*field_, *table_, *message_);
    footer_ = new PanelFooter(this);
    column->addWidget(footer_);
    setFixedWidth(metrics::WIDTH);
}

SearchPanelView::~SearchPanelView() = default;

QWidget *SearchPanelView::buildHeader()
{
    header_ = new QWidget(this);
    auto *line = new QHBoxLayout(header_);
    // A layout mirrors its widgets, but not its margins.
    if (isRightToLeft())
        line->setContentsMargins(MENU_BUTTON_EDGE, 0, metrics::ICON_LEFT, 0);
    else
        line->setContentsMargins(metrics::ICON_LEFT, 0, MENU_BUTTON_EDGE, 0);
    line->setSpacing(metrics::TEXT_LEFT - metrics::ICON_LEFT - metrics::ICON - FIELD_OWN_MARGIN);

    indicator_ = new SearchIndicator(header_);
    line->addWidget(indicator_);

    field_ = new QLineEdit(header_);
    field_->setFrame(false);
    field_->setPlaceholderText(tr("Find a folder"));
    field_->setAccessibleName(tr("Find a folder"));
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    field_->setFont(large);
    line->addWidget(field_);

    updateButton_ = pushButton(tr("Update…"), ButtonRank::primary, header_);
    updateButton_->setFocusPolicy(Qt::TabFocus);
    updateButton_->setFixedSize(std::max(UPDATE_BUTTON_WIDTH, updateButton_->sizeHint().width()),
                                std::max(UPDATE_BUTTON_HEIGHT, fontMetrics().height() + 16));
    updateButton_->hide();
    line->addWidget(updateButton_);
    menuButton_ = new MenuButton(header_);
    line->addWidget(menuButton_);

    header_->setFixedHeight(
        std::max(metrics::FIELD_HEIGHT, (QFontMetrics(large).height() + 31) / 4 * 4));
    return header_;
}

QWidget *SearchPanelView::buildBody(IconSource &icons)
{
    body_ = new QWidget(this);
    auto *stack = new QVBoxLayout(body_);
    stack->setContentsMargins(0, metrics::INSET, 0, metrics::INSET);
    stack->setSpacing(0);
    heading_ = new QLabel(body_);
    heading_->setForegroundRole(QPalette::PlaceholderText);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    heading_->setFont(small);
    heading_->setContentsMargins(metrics::ICON_LEFT, 0, metrics::ICON_LEFT, metrics::INSET);
    heading_->hide();
    stack->addWidget(heading_);
    buildTable(icons);
    stack->addWidget(table_);
    message_ = new PanelMessage(body_);
    message_->hide();
    stack->addWidget(message_);
    body_->setFixedHeight(bodyHeight(metrics::VISIBLE_ROWS));
    return body_;
}

int SearchPanelView::bodyHeight(int rows) const
{
    return rows * metrics::rowHeight(fontMetrics()) + 2 * metrics::INSET;
}

void SearchPanelView::buildTable(IconSource &icons)
{
    table_ = new SearchResultsTable(searchResults_, icons, this);
    table_->setItemDelegate(new LightningSearchTableRowView(
        searchResults_, icons, QDir::homePath().toStdString(), table_));
    new ScrollMark(table_);
    connect(&icons, &IconSource::iconsChanged, table_->viewport(), qOverload<>(&QWidget::update));
}

void SearchPanelView::setHeading(const QString &heading)
{
    heading_->setText(heading);
    heading_->setVisible(!heading.isEmpty());
}

QString SearchPanelView::heading() const
{
    return heading_->text();
}

void SearchPanelView::setShowsMessage(bool showsMessage)
{
    if (message_->isHidden() != showsMessage)
        return;
    // One widget is hidden before the other is shown, or the layout would ask for room for both.
    (showsMessage ? static_cast<QWidget *>(table_) : message_)->hide();
    (showsMessage ? static_cast<QWidget *>(message_) : table_)->show();
}

void SearchPanelView::fitToRows()
{
    const int rows = table_->isHidden() ? MESSAGE_ROWS : searchResults_.rowCount();
    const int heading = heading_->isHidden() ? 0 : heading_->sizeHint().height();
    body_->setFixedHeight(std::min(bodyHeight(rows) + heading, bodyHeight(metrics::VISIBLE_ROWS)));
}

int SearchPanelView::greatestHeight() const
{
    return header_->minimumHeight() + bodyHeight(metrics::VISIBLE_ROWS) + footer_->minimumHeight();
}

void SearchPanelView::focusButtons()
{
    const std::initializer_list<QWidget *> buttons{&message_->homeFolderButton(), updateButton_,
                                                   menuButton_};
    const auto *shown = std::ranges::find_if(buttons, &QWidget::isVisible);
    if (shown != buttons.end())
        (*shown)->setFocus(Qt::ShortcutFocusReason);
}

void SearchPanelView::wheelEvent(QWheelEvent *event)
{
    QCoreApplication::sendEvent(table_->verticalScrollBar(), event);
}

void SearchPanelView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(0, header_->geometry().bottom(), width(), 1,
                     PanelPalette::of(palette()).hairline);
}

} // namespace quillon
