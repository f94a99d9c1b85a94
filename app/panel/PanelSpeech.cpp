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

/// Makes the accessible object of a widget that draws its text itself.
QAccessibleInterface *drawnText(const QString &, QObject *object)
{
    const bool isText = dynamic_cast<PanelMessage *>(object) || dynamic_cast<PanelFooter *>(object);
    return isText ? new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::StaticText)
                  : nullptr;
}

/// Tells a screen reader that the widget has the focus, so that it goes there. Keys are not
/// affected.
void goTo(QWidget &widget)
{
    QAccessibleEvent event(&widget, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

/// Returns true for a key that, pressed alone, silences a screen reader.
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
    // The list reports its current row only while it has the focus.
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
    // This runs before the field handles the key, so that the letter is heard as the field's.
    if (watched == &field_ && event->type() == QEvent::KeyPress &&
        !isModifier(static_cast<QKeyEvent &>(*event)))
        goTo(field_);
    return QObject::eventFilter(watched, event);
}

} // namespace quillon
