#pragma once

#include <QWidget>

class QGridLayout;

namespace quillon {

class FormNote;

/// A form. Labels end on one line, controls begin on another, and quiet sentences and faults are
/// below the controls. Rows follow each other from top to bottom, in the order of the Tab key.
class FormPane : public QWidget
{
    Q_OBJECT

public:
    explicit FormPane(QWidget *parent = nullptr);

    /// Adds a control after its label, whose mnemonic leads to it. Without a label, as for a check
    /// box that has its own text, adds only the control.
    void addRow(const QString &label, QWidget *control);
    /// Adds a table or another control that takes the whole width, and the height that is left.
    void addWide(QWidget *control);
    /// Adds a note below the last control, which describes the control to screen readers.
    FormNote *addNote(const QString &sentence = {});
    /// Adds a note over the whole width, for example before or below a table.
    FormNote *addWideNote(const QString &sentence = {});
    /// Adds this note over the whole width. It is a child of the pane.
    void addWideNote(FormNote *note);
    /// Adds a gap before rows that belong to something else.
    void addGap();
    /// Keeps the rows above at the top of the pane.
    void addStretch();

    /// Shows what the settings hold now. It is called whenever they may have changed.
    virtual void showStored() {}

protected:
    /// Lets Escape close an open drop-down list and not the window.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int beginRow();
    void follow(QWidget *control);

    QGridLayout *grid_;
    QWidget *lastControl_ = nullptr;
    /// The gap before the next row.
    int distance_ = 0;
    int nextRow_ = 0;
};

} // namespace quillon
