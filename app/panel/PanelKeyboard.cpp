#include "app/panel/PanelKeyboard.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include <optional>

namespace quillon {

namespace {

constexpr Qt::KeyboardModifiers CONSIDERED =
    Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier;

/// Returns the command of a key that does not depend on the text, pressed without modifiers.
std::optional<PanelCommand> plainCommand(int key)
{
    switch (key) {
    case Qt::Key_Tab:
        return PanelCommand::openPlainly;
    case Qt::Key_Down:
        return PanelCommand::nextRow;
    case Qt::Key_Up:
        return PanelCommand::previousRow;
    case Qt::Key_PageDown:
        return PanelCommand::nextPage;
    case Qt::Key_PageUp:
        return PanelCommand::previousPage;
    case Qt::Key_F1:
        return PanelCommand::showKeys;
    case Qt::Key_F10:
        return PanelCommand::goToButtons;
    case Qt::Key_Menu:
        return PanelCommand::showRowMenu;
    default:
        return std::nullopt;
    }
}

/// Returns the command of Home and End, which move through the rows when they would not move the
/// caret.
std::optional<PanelCommand> edgeCommand(int key, const QLineEdit &field)
{
    if (field.hasSelectedText())
        return std::nullopt;
    if (key == Qt::Key_Home && field.cursorPosition() == 0)
        return PanelCommand::firstRow;
    if (key == Qt::Key_End && field.cursorPosition() == field.text().size())
        return PanelCommand::lastRow;
    return std::nullopt;
}

std::optional<PanelCommand> command(const QKeyEvent &event, const QLineEdit &field)
{
    const Qt::KeyboardModifiers held = event.modifiers() & CONSIDERED;
    const int key = event.key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        return PanelCommand::open;
    if (key == Qt::Key_Escape)
        return PanelCommand::close;
    if (held == Qt::ControlModifier && key == Qt::Key_Comma)
        return PanelCommand::openPreferences;
    // A capital letter quits as well, so Caps Lock or a held Shift makes no difference.
    if ((held & ~Qt::ShiftModifier) == Qt::ControlModifier && key == Qt::Key_Q)
        return PanelCommand::terminate;
    if (held == Qt::ShiftModifier && key == Qt::Key_F10)
        return PanelCommand::showRowMenu;
    if (held == Qt::ControlModifier && key == Qt::Key_D)
        return PanelCommand::keepOnTop;
    // With a selected text the keys cut it out, as in every field.
    if (held == Qt::ShiftModifier && key == Qt::Key_Delete && !field.hasSelectedText())
        return PanelCommand::forget;
    if (held != Qt::NoModifier)
        return std::nullopt;
    const auto plain = plainCommand(key);
    return plain ? plain : edgeCommand(key, field);
}

/// Returns the row that Ctrl with a digit from 1 to 9 opens, counted from 0.
std::optional<int> numberedRow(const QKeyEvent &event)
{
    const bool isDigit = event.key() >= Qt::Key_1 && event.key() <= Qt::Key_9;
    return isDigit && (event.modifiers() & CONSIDERED) == Qt::ControlModifier
               ? std::optional(event.key() - Qt::Key_1)
               : std::nullopt;
}

bool isModifier(int key)
{
    // Alt with Shift is called Meta by some keyboards.
    return key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Shift ||
           key == Qt::Key_Meta;
}

} // namespace

ActionShortcutFlags shortcutFlags(Qt::KeyboardModifiers modifiers)
{
    return {.option = modifiers.testFlag(Qt::AltModifier),
            .shift = modifiers.testFlag(Qt::ShiftModifier),
            .command = modifiers.testFlag(Qt::ControlModifier)};
}

PanelKeyboard::PanelKeyboard(QLineEdit &field) : field_(field)
{
    field_.installEventFilter(this);
}

void PanelKeyboard::watchButton(QObject &button)
{
    button.installEventFilter(this);
}

void PanelKeyboard::reset()
{
    setHeldKeys({});
    if (!isComposing_)
        return;
    QGuiApplication::inputMethod()->reset();
    QInputMethodEvent nothingComposed;
    QCoreApplication::sendEvent(&field_, &nothingComposed);
}

bool PanelKeyboard::eventFilter(QObject *watched, QEvent *event)
{
    const bool isField = watched == &field_;
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto &key = static_cast<QKeyEvent &>(*event);
        noteModifier(key);
        return isField ? handleFieldKey(key) : handleButtonKey(key);
    }
    case QEvent::KeyRelease:
        noteModifier(static_cast<const QKeyEvent &>(*event));
        return false;
    case QEvent::InputMethod: {
        // This runs before the field handles the event, since a commit changes the text meanwhile.
        const bool wasComposing = isComposing_;
        isComposing_ = !static_cast<QInputMethodEvent &>(*event).preeditString().isEmpty();
        if (wasComposing && !isComposing_)
            QMetaObject::invokeMethod(this, &PanelKeyboard::compositionEnded, Qt::QueuedConnection);
        return false;
    }
    default:
        return false;
    }
}

bool PanelKeyboard::handleFieldKey(const QKeyEvent &event)
{
    if (isComposing_)
        return false;
    if (const auto row = numberedRow(event)) {
        Q_EMIT rowWanted(*row);
        return true;
    }
    const auto meant = command(event, field_);
    if (!meant)
        return false;
    Q_EMIT commanded(*meant, shortcutFlags(event.modifiers()));
    return true;
}

bool PanelKeyboard::handleButtonKey(QKeyEvent &event)
{
    const auto meant = command(event, field_);
    if (meant == PanelCommand::close) {
        field_.setFocus();
        return true;
    }
    if (meant == PanelCommand::openPreferences || meant == PanelCommand::showKeys ||
        meant == PanelCommand::terminate) {
        Q_EMIT commanded(*meant, {});
        return true;
    }
    // The blank presses the button; any other text is for the field.
    if (event.text().isEmpty() || !event.text().at(0).isPrint() || event.key() == Qt::Key_Space)
        return false;
    field_.setFocus();
    QCoreApplication::sendEvent(&field_, &event);
    return true;
}

void PanelKeyboard::noteModifier(const QKeyEvent &event)
{
    if (!isModifier(event.key()))
        return;
    const ActionShortcutFlags now = shortcutFlags(QGuiApplication::queryKeyboardModifiers());
    // When the panel has come up, the keys of the shortcut are still held.
    if (event.type() == QEvent::KeyPress || heldKeys_ != ActionShortcutFlags{})
        setHeldKeys(now);
}

void PanelKeyboard::setHeldKeys(ActionShortcutFlags flags)
{
    if (flags == heldKeys_)
        return;
    heldKeys_ = flags;
    Q_EMIT heldKeysChanged(flags);
}

} // namespace quillon
