#pragma once

#include "app/widgets/PanelPalette.h"

#include <QDialog>

#include <functional>

namespace quillon {

class FormPane;
class PanelButton;

/// A small window over another one that asks for something: a form, "Cancel", and the one button
/// that carries it out. The window below waits; the program does not.
class FormSheet : public QDialog
{
    Q_OBJECT

public:
    /// Deletes itself when it is closed. The texts of the button are such as "&Add".
    FormSheet(const QString &title, const QString &confirmation, const PanelPalette &palette,
              QWidget *over);

    /// Asks whether something is to be done that cannot be taken back; "Cancel" is the default.
    static void confirm(const QString &title, const QString &confirmation, const QString &text,
                        const PanelPalette &palette, QWidget *over, std::function<void()> carryOut);

    /// The owner fills it before the sheet is opened.
    FormPane &form() { return *form_; }
    PanelButton &confirmationButton() { return *confirmationButton_; }
    /// Hidden where everything in the sheet takes effect at once.
    PanelButton &cancelButton() { return *cancelButton_; }

    void setPanelPalette(const PanelPalette &palette);
    /// Fills in the tones of what is in the form by now, and shows the sheet.
    void open() override;

Q_SIGNALS:
    /// The user wants it carried out. The sheet stays until it is accepted.
    void confirmed();

private:
    PanelPalette palette_;
    FormPane *form_;
    PanelButton *cancelButton_;
    PanelButton *confirmationButton_;
};

} // namespace quillon
