#pragma once

#include "actions/ActionShortcutFlags.h"

#include <QObject>

class QKeyEvent;
class QLineEdit;

namespace quillon {

/// A command that a key gives to the panel.
enum class PanelCommand
{
    /// Return, with the modifiers held.
    open,
    /// Tab, which opens as Return alone does.
    openPlainly,
    close,
    nextRow,
    previousRow,
    nextPage,
    previousPage,
    firstRow,
    lastRow,
    showRowMenu,
    /// Keeps the row on top, or no longer.
    keepOnTop,
    forget,
    goToButtons,
    openPreferences,
    showKeys,
    terminate,
};

/// Returns the Ctrl, Alt and Shift keys among the modifiers.
ActionShortcutFlags shortcutFlags(Qt::KeyboardModifiers modifiers);

/// Reads the keys that reach the panel's field and its buttons. Keys that are commands do not reach
/// them. While an input method composes a text, it gets every key.
class PanelKeyboard : public QObject
{
    Q_OBJECT

public:
    /// The field outlives this object.
    explicit PanelKeyboard(QLineEdit &field);

    /// After this call text typed on the button goes to the field, and Escape leads there.
    void watchButton(QObject &button);
    /// Returns true while the field shows a text that an input method is still composing.
    bool isComposing() const { return isComposing_; }
    /// Forgets the keys that were held and the text that was being composed.
    void reset();

Q_SIGNALS:
    void commanded(PanelCommand command, ActionShortcutFlags flags);
    /// The row of this number, counted from 0, is to be opened.
    void rowWanted(int row);
    /// Reports the modifiers that were pressed here and are still held, without those that were
    /// held before.
    void heldKeysChanged(ActionShortcutFlags flags);
    void compositionEnded();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool handleFieldKey(const QKeyEvent &event);
    bool handleButtonKey(QKeyEvent &event);
    void noteModifier(const QKeyEvent &event);
    void setHeldKeys(ActionShortcutFlags flags);

    QLineEdit &field_;
    bool isComposing_ = false;
    ActionShortcutFlags heldKeys_;
};

} // namespace quillon
