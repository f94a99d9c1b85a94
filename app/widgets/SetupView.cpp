#include "app/widgets/SetupView.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quillon {

namespace {

constexpr int ICON = 48;
constexpr double TITLE_SIZE = 1.35;

} // namespace

SetupView::SetupView(QWidget *parent) : QWidget(parent) {}

QVBoxLayout *SetupView::column(QWidget *of, int spacing, int margin)
{
    auto *column = new QVBoxLayout(of);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    return column;
}

QHBoxLayout *SetupView::line(int spacing)
{
    auto *line = new QHBoxLayout;
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing);
    return line;
}

QLabel *SetupView::label(const QString &text, QPalette::ColorRole tone, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(tone);
    return label;
}

QLabel *SetupView::paragraph(const QString &text, QPalette::ColorRole tone, QWidget *parent)
{
    QLabel *paragraph = label({}, tone, parent);
    paragraph->setWordWrap(true);
    setParagraph(paragraph, text);
    return paragraph;
}

void SetupView::setParagraph(QLabel *paragraph, const QString &text)
{
    paragraph->setText(text);
    // In a window that has margins of its own, layouts calculate the height of wrapped text too
    // small.
    const int width = metrics::textWidth(paragraph->fontMetrics(), TEXT_WIDTH);
    paragraph->setFixedSize(width, std::max(paragraph->heightForWidth(width), 0));
}

QWidget *SetupView::heading(const QString &title, QWidget *parent)
{
    auto *heading = new QWidget(parent);
    QHBoxLayout *across = line(APART);
    heading->setLayout(across);
    auto *icon = new QLabel(heading);
    icon->setPixmap(QIcon(QStringLiteral(":/quillon/icon.svg"))
                        .pixmap(QSize(ICON, ICON), parent->devicePixelRatioF()));
    across->addWidget(icon);
    QLabel *text = label(title, QPalette::WindowText, heading);
    emphasise(text, TITLE_SIZE);
    across->addWidget(text, 1);
    return heading;
}

void SetupView::emphasise(QLabel *label, double factor)
{
    QFont font = label->font();
    font.setWeight(QFont::DemiBold);
    font.setPointSizeF(font.pointSizeF() * factor);
    label->setFont(font);
}

} // namespace quillon
