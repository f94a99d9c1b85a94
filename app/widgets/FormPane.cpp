#include "app/widgets/FormPane.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/PanelButton.h"
#include "app/widgets/PanelMetrics.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>

namespace quillon {

namespace {

enum Column
{
    LABELS,
    CONTROLS,
};

} // namespace

FormPane::FormPane(QWidget *parent) : QWidget(parent), grid_(new QGridLayout(this))
{
    grid_->setContentsMargins(metrics::FORM_MARGIN, metrics::FORM_MARGIN, metrics::FORM_MARGIN,
                              metrics::FORM_MARGIN);
    grid_->setHorizontalSpacing(metrics::FORM_ROW);
    // Distances differ, so they are rows of their own.
    grid_->setVerticalSpacing(0);
    grid_->setColumnMinimumWidth(LABELS, metrics::FORM_LABEL);
    grid_->setColumnStretch(CONTROLS, 1);
}

int FormPane::beginRow()
{
    if (distance_ > 0)
        grid_->setRowMinimumHeight(nextRow_++, distance_);
    distance_ = metrics::FORM_ROW;
    return nextRow_++;
}

void FormPane::addRow(const QString &label, QWidget *control)
{
    const int row = beginRow();
    follow(control);
    if (!label.isEmpty()) {
        auto *name = new QLabel(label, this);
        name->setBuddy(control);
        // A label beside several lines stands beside the first.
        name->setMinimumHeight(
            std::min(control->sizeHint().height(), name->sizeHint().height() * 2));
        grid_->addWidget(name, row, LABELS, Qt::AlignRight | Qt::AlignTop);
    }
    grid_->addWidget(control, row, CONTROLS, Qt::AlignLeft | Qt::AlignVCenter);
}

void FormPane::addWide(QWidget *control)
{
    const int row = beginRow();
    follow(control);
    grid_->addWidget(control, row, LABELS, 1, -1);
    grid_->setRowStretch(row, 1);
}

void FormPane::follow(QWidget *control)
{
    if (lastControl_ != nullptr)
        setTabOrder(lastControl_, control);
    lastControl_ = control;
}

FormNote *FormPane::addNote(const QString &sentence)
{
    distance_ = metrics::FORM_NEAR;
    const int row = beginRow();
    auto *note = new FormNote(sentence, this);
    note->setPanelPalette(panelPalette_);
    grid_->addWidget(note, row, CONTROLS, Qt::AlignLeft | Qt::AlignTop);
    if (lastControl_ != nullptr)
        lastControl_->setAccessibleDescription(sentence);
    return note;
}

FormNote *FormPane::addWideNote(const QString &sentence)
{
    const int row = beginRow();
    auto *note = new FormNote(sentence, this);
    note->setTextWidth(metrics::FORM_LABEL + metrics::FORM_ROW + metrics::FORM_TEXT);
    note->setPanelPalette(panelPalette_);
    grid_->addWidget(note, row, LABELS, 1, -1, Qt::AlignLeft | Qt::AlignTop);
    return note;
}

void FormPane::addGap()
{
    distance_ = metrics::FORM_GROUP;
}

void FormPane::addStretch()
{
    grid_->setRowStretch(nextRow_++, 1);
}

void FormPane::setPanelPalette(const PanelPalette &palette)
{
    panelPalette_ = palette;
    for (auto *note : findChildren<FormNote *>())
        note->setPanelPalette(palette);
    for (auto *button : findChildren<PanelButton *>())
        button->setPanelPalette(palette);
    for (auto *table : findChildren<FormTable *>())
        table->setPanelPalette(palette);
}

} // namespace quillon
