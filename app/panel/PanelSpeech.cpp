#include "app/panel/PanelSpeech.h"

#include "app/panel/PanelFooter.h"
#include "app/panel/PanelMessage.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>

namespace quillon {

namespace {

/// A widget that draws its text itself.
QAccessibleInterface *drawnText(const QString &, QObject *object)
{
    const bool isText = dynamic_cast<PanelMessage *>(object) || dynamic_cast<PanelFooter *>(object);
    return isText ? new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::StaticText)
                  : nullptr;
}

/// A screen reader goes where the focus is said to be; keys are not affected.
void goTo(QWidget &widget)
{
    QAccessibleEvent event(&widget, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

/// Pressed alone, such a key silences a screen reader.
bool isModifier(const QKeyEvent &event)
{
    return (event.key() >= Qt::Key_Shift && event.key() <= Qt::Key_ScrollLock) ||
           event.key() == Qt::Key_AltGr;
}

} // namespace

PanelSpeech::PanelSpeech(QLineEdit &field, QListView &rows, PanelMessage &message)
    : field_(field), message_(message)
{
    QAccessible::installFactory(drawnText);
    // The list tells of its current row as long as it has the focus.
    rows.setFocusProxy(&field);
    field.installEventFilter(this);
    message.installEventFilter(this);
    connect(&message, &PanelMessage::titleChanged, this, [this] {
        if (message_.isVisible())
            goTo(message_);
    });
}

bool PanelSpeech::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &message_ && event->type() == QEvent::Show)
        goTo(message_);
    // Before the field deals with it, so that the letter is heard as the field's.
    if (watched == &field_ && event->type() == QEvent::KeyPress &&
        !isModifier(static_cast<QKeyEvent &>(*event)))
        goTo(field_);
    return QObject::eventFilter(watched, event);
}

} // namespace quillon
