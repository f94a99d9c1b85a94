#include "app/widgets/FormPane.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/PanelMetrics.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace quillon {

namespace {

enum Column
{
    labels,
    controls,
};

/// Returns the part of the control that can have the keyboard, to which the label's mnemonic leads.
/// Screen readers find the label of a control only beside it, so a part gets a name of its own.
QWidget *named(QWidget *control, const QString &label)
{
    QWidget *part = control->focusProxy();
    if (part == nullptr)
        return control;
    if (part->accessibleName().isEmpty())
        part->setAccessibleName(QString(label).remove(u'&'));
    return part;
}

bool wantsHeight(const QWidget &control)
{
    constexpr int WANTING = QSizePolicy::ExpandFlag | QSizePolicy::IgnoreFlag;
    return (static_cast<int>(control.sizePolicy().verticalPolicy()) & WANTING) != 0;
}

} // namespace

FormPane::FormPane(QWidget *parent) : QWidget(parent), grid_(new QGridLayout(this))
{
    grid_->setContentsMargins(metrics::FORM_MARGIN, metrics::FORM_MARGIN, metrics::FORM_MARGIN,
                              metrics::FORM_MARGIN);
    grid_->setHorizontalSpacing(metrics::FORM_ROW);
    // The distances differ, so each is a row of its own.
    grid_->setVerticalSpacing(0);
    grid_->setColumnMinimumWidth(labels, metrics::FORM_LABEL);
    grid_->setColumnStretch(controls, 1);
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
        name->setBuddy(named(control, label));
        // A label beside several lines is level with the first.
        name->setMinimumHeight(control->hasHeightForWidth() ? metrics::FORM_CONTROL_HEIGHT
                                                            : std::max(control->sizeHint().height(),
                                                                       control->minimumHeight()));
        grid_->addWidget(name, row, labels, Qt::AlignRight | Qt::AlignTop);
    }
    grid_->addWidget(control, row, controls, Qt::AlignLeft | Qt::AlignVCenter);
}

void FormPane::addWide(QWidget *control)
{
    const int row = beginRow();
    follow(control);
    grid_->addWidget(control, row, labels, 1, -1);
    if (wantsHeight(*control))
        grid_->setRowStretch(row, 1);
}

void FormPane::follow(QWidget *control)
{
    // Drop-down lists are at least as wide as their neighbours, and as wide as their texts.
    if (auto *list = qobject_cast<QComboBox *>(control)) {
        list->setMinimumWidth(metrics::FORM_CONTROL);
        list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        list->installEventFilter(this);
    }
    if (lastControl_ != nullptr)
        setTabOrder(lastControl_, control);
    lastControl_ = control;
}

bool FormPane::eventFilter(QObject *watched, QEvent *event)
{
    auto *list = qobject_cast<QComboBox *>(watched);
    // A drop-down list has its view once it is opened.
    if (list != nullptr && event->type() == QEvent::ChildPolished)
        list->view()->installEventFilter(this);
    // Unless the view claims the key, it is a command of the window.
    else if (list == nullptr && event->type() == QEvent::ShortcutOverride &&
             static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel))
        event->accept();
    return QWidget::eventFilter(watched, event);
}

FormNote *FormPane::addNote(const QString &sentence)
{
    distance_ = metrics::FORM_NEAR;
    const int row = beginRow();
    auto *note = new FormNote(sentence, this);
    grid_->addWidget(note, row, controls, Qt::AlignLeft | Qt::AlignTop);
    if (lastControl_ != nullptr)
        lastControl_->setAccessibleDescription(sentence);
    return note;
}

FormNote *FormPane::addWideNote(const QString &sentence)
{
    auto *note = new FormNote(sentence, this);
    addWideNote(note);
    return note;
}

void FormPane::addWideNote(FormNote *note)
{
    const int row = beginRow();
    note->setTextWidth(metrics::FORM_TEXT, metrics::FORM_LABEL + metrics::FORM_ROW);
    grid_->addWidget(note, row, labels, 1, -1, Qt::AlignLeft | Qt::AlignTop);
}

void FormPane::addGap()
{
    distance_ = metrics::FORM_GROUP;
}

void FormPane::addStretch()
{
    grid_->setRowStretch(nextRow_++, 1);
}

} // namespace quillon
