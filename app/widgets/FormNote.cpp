#include "app/widgets/FormNote.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"

#include <QAccessible>
#include <QEvent>

#include <algorithm>

namespace quillon {

FormNote::FormNote(const QString &sentence, QWidget *parent)
    : QLabel(parent), sentence_(sentence), textWidth_(metrics::FORM_TEXT)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    showText();
}

void FormNote::setTextWidth(int width, int beside)
{
    textWidth_ = width;
    beside_ = beside;
    fit();
}

void FormNote::keepRoomFor(int lines)
{
    fewestLines_ = lines;
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    showText();
}

void FormNote::setSentence(const QString &sentence)
{
    sentence_ = sentence;
    showText();
}

void FormNote::sayFault(const QString &fault)
{
    if (fault == fault_)
        return;
    fault_ = fault;
    showText();
    if (fault_.isEmpty())
        return;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FormNote::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fit();
}

void FormNote::showText()
{
    setText(hasFault() ? fault_ : sentence_);
    setForegroundRole(hasFault() ? PanelPalette::FAULT : QPalette::PlaceholderText);
    // Without a parent the note would become a window.
    if (text().isEmpty() && fewestLines_ == 0)
        hide();
    else if (parentWidget() != nullptr)
        show();
    fit();
}

/// Layouts calculate the height of wrapped text too small, so it is fixed.
void FormNote::fit()
{
    const int width = metrics::textWidth(fontMetrics(), textWidth_) + beside_;
    // It has none without a text.
    setFixedSize(width,
                 std::max(heightForWidth(width), fewestLines_ * fontMetrics().lineSpacing()));
}

} // namespace quillon
