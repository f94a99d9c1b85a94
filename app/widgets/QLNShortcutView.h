#pragma once

#include "shortcut/QLNShortcut.h"

#include <QWidget>

#include <optional>

class QKeyEvent;
class QPushButton;

namespace quillon {

class FormNote;
class QLNShortcutBinder;
class QLNShortcutMonitor;

/// Shows the global shortcut and records another one. It is a button with a note below it, which
/// says what is wrong, if anything. A recorded shortcut is stored at once.
class QLNShortcutView : public QWidget
{
    Q_OBJECT

public:
    /// All three outlive this object.
    QLNShortcutView(QLNShortcutMonitor &monitor, QLNShortcutBinder &binder, HotKey &service,
                    QWidget *parent = nullptr);
    ~QLNShortcutView() override;

    /// Takes the keyboard until a key is chosen, Escape cancels, Backspace clears the shortcut, or
    /// another window or control takes the keyboard. If no program can have a key, says so instead.
    void startRecording();
    bool isRecording() const { return isRecording_; }
    /// Records the key if it is pressed with Ctrl, Alt or Super or is a function key, as if the
    /// button had been pressed first. Returns false for every other key.
    bool recordAtOnce(const QKeyEvent &event);

    /// Shows a key that no other program has, as long as none is stored.
    void propose();
    bool isProposing() const;
    /// Stores the proposed key if none is stored. Returns false when it cannot be written.
    bool storeProposed();

    /// The note, which keeps its sentence while there is nothing else to say.
    FormNote &note() { return *message_; }
    void setSentence(const QString &sentence);

Q_SIGNALS:
    void recordingChanged(bool isRecording);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildButton();
    void stopRecording();
    void keyPressed(const QKeyEvent &event);
    /// Stores the key if nothing is wrong with it, and otherwise continues to record.
    void choose(const KeyCombination &keys);
    /// Stores the shortcut, or removes the stored one when there is none. Also ends the recording.
    void store(const std::optional<QLNShortcut> &shortcut);
    void showShortcut();
    void showFault();
    void say(const QString &fault);

    QLNShortcutMonitor &monitor_;
    QLNShortcutBinder &binder_;
    HotKey &service_;
    QPushButton *button_;
    FormNote *message_;
    QString sentence_;
    std::optional<QLNShortcut> proposed_;
    bool isRecording_ = false;
};

} // namespace quillon
