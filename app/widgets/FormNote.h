#pragma once

#include "app/widgets/PanelPalette.h"

#include <QLabel>

namespace quillon {

/// The line below a control: a quiet sentence about it, and while something is wrong what that is,
/// in the sentence's place and told to screen readers.
class FormNote : public QLabel
{
    Q_OBJECT

public:
    /// Takes no room while it has nothing to say, unless room is kept for it.
    explicit FormNote(const QString &sentence = {}, QWidget *parent = nullptr);

    void setPanelPalette(const PanelPalette &palette);

    /// Sets the least width of the text; a larger font takes more.
    void setTextWidth(int width);
    /// Takes the room of so many lines at least, whatever it says.
    void keepRoomFor(int lines);
    void setSentence(const QString &sentence);
    /// The text is empty when nothing is wrong any more.
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
    int fewestLines_ = 0;
    PanelPalette palette_ = PanelPalette::light();
};

} // namespace quillon
