#pragma once

#include <QLabel>

namespace quillon {

/// The line below a control. It holds a quiet sentence about the control or, while something is
/// wrong, a fault, which screen readers are told too.
class FormNote : public QLabel
{
    Q_OBJECT

public:
    /// The note takes no room while it has nothing to say, unless room is kept for it.
    explicit FormNote(const QString &sentence = {}, QWidget *parent = nullptr);

    /// Sets the least width of the text; a larger font takes more. What is beside other notes is
    /// added, for a note that is there alone.
    void setTextWidth(int width, int beside = 0);
    /// Takes the room of at least this many lines, whatever the note says.
    void keepRoomFor(int lines);
    void setSentence(const QString &sentence);
    /// Shows the fault, or the sentence again when the text is empty.
    void sayFault(const QString &fault);
    bool hasFault() const { return !fault_.isEmpty(); }

protected:
    void changeEvent(QEvent *event) override;

private:
    void showText();
    void fit();

    QString sentence_;
    QString fault_;
    int textWidth_;
    int beside_ = 0;
    int fewestLines_ = 0;
};

} // namespace quillon
