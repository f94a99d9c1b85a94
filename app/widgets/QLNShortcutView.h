#pragma once

#include "shortcut/QLNShortcut.h"

#include <QWidget>

#include <optional>

class QKeyEvent;

namespace quillon {

class FormNote;
class PanelButton;
class QLNShortcutBinder;
class QLNShortcutMonitor;

/// Shows the global shortcut and records another one: a button, and below it a line that says what
/// is wrong, if anything. What is recorded is stored at once.
class QLNShortcutView : public QWidget
{
    Q_OBJECT

public:
    /// All three outlive this.
    QLNShortcutView(QLNShortcutMonitor &monitor, QLNShortcutBinder &binder, HotKey &service,
                    QWidget *parent = nullptr);
    ~QLNShortcutView() override;

    /// Takes the keyboard until a key is chosen, Escape gives up, Backspace clears the shortcut, or
    /// the keyboard goes elsewhere. Where no program can have a key it says so instead.
    void startRecording();
    bool isRecording() const { return isRecording_; }

Q_SIGNALS:
    void recordingChanged(bool isRecording);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildButton();
    void stopRecording();
    void keyPressed(const QKeyEvent &event);
    /// Stores it if nothing speaks against it; goes on recording otherwise.
    void choose(const KeyCombination &keys);
    /// Ends the recording as well; absent removes the shortcut.
    void store(const std::optional<QLNShortcut> &shortcut);
    void showShortcut();
    void showFault();
    void say(const QString &fault);

    QLNShortcutMonitor &monitor_;
    QLNShortcutBinder &binder_;
    HotKey &service_;
    PanelButton *button_;
    FormNote *message_;
    bool isRecording_ = false;
};

} // namespace quillon
