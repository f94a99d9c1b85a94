#pragma once

#include "app/widgets/PanelPalette.h"

#include <QWidget>

class QGridLayout;

namespace quillon {

class FormNote;

/// A form: labels end on one line, controls begin on another, quiet sentences and faults stand
/// below the controls. Rows follow each other from top to bottom, in the order of the Tab key.
class FormPane : public QWidget
{
    Q_OBJECT

public:
    explicit FormPane(QWidget *parent = nullptr);

    /// A control behind its label, whose mnemonic leads to it. Without a label, as for a check box
    /// that carries its own text, only the control.
    void addRow(const QString &label, QWidget *control);
    /// A table or another control that takes the whole width, and the height that is left.
    void addWide(QWidget *control);
    /// Below the last control; speaks for it to screen readers.
    FormNote *addNote(const QString &sentence = {});
    /// Over the whole width, as before or below a table.
    FormNote *addWideNote(const QString &sentence = {});
    /// The rows that follow belong to something else.
    void addGap();
    /// The rows above keep to the top of the pane.
    void addStretch();

    /// Shows what the settings hold now. Called whenever they may have changed.
    virtual void showStored() {}
    /// Hands the tones to every note, button, table and menu below this.
    virtual void setPanelPalette(const PanelPalette &palette);
    const PanelPalette &panelPalette() const { return panelPalette_; }

private:
    int beginRow();
    void follow(QWidget *control);

    QGridLayout *grid_;
    QWidget *lastControl_ = nullptr;
    /// The gap before the next row.
    int distance_ = 0;
    int nextRow_ = 0;
    PanelPalette panelPalette_ = PanelPalette::light();
};

} // namespace quillon
