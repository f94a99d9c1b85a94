#pragma once

#include <QDialog>

#include <functional>

class QPushButton;

namespace quillon {

class FormPane;

/// A small window over another one that asks for something: a form, "Cancel", and the one button
/// that carries it out. The window below waits; the program does not.
class FormSheet : public QDialog
{
    Q_OBJECT

public:
    /// Deletes itself when it is closed. The texts of the button are such as "&Add".
    FormSheet(const QString &title, const QString &confirmation, QWidget *over);

    /// Asks whether something is to be done that cannot be taken back; "Cancel" is the default.
    static void confirm(const QString &title, const QString &confirmation, const QString &text,
                        QWidget *over, std::function<void()> carryOut);

    /// The owner fills it before the sheet is opened.
    FormPane &form() { return *form_; }
    QPushButton &confirmationButton() { return *confirmationButton_; }
    /// Hidden where everything in the sheet takes effect at once.
    QPushButton &cancelButton() { return *cancelButton_; }

Q_SIGNALS:
    /// The user wants it carried out. The sheet stays until it is accepted.
    void confirmed();

private:
    FormPane *form_;
    QPushButton *cancelButton_;
    QPushButton *confirmationButton_;
};

} // namespace quillon
