#include "app/preferences/ActionPreferencesViewController.h"

#include "app/preferences/ActionTable.h"
#include "app/preferences/AddActionViewController.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QPushButton>
#include <QShortcut>

namespace quillon {

ActionPreferencesViewController::ActionPreferencesViewController(const Services &services,
                                                                 QWidget *parent)
    : FormPane(parent),
      actionsTableView(new FormTable(ActionTable::actionRowIdentifier, this)),
      actionTable(new ActionTable(*actionsTableView, services.defaults, this)),
      actionAddRemoveSegmentedControl(new SegmentedControl(
          {tr("A&dd…"), tr("&Remove"), tr("&Change…"), QStringLiteral("↑"), QStringLiteral("↓")},
          this)),
      restoreButton(pushButton(tr("Set &Back…"), ButtonRank::control, this)),
      services_(services)
{
    actionsTableView->setAccessibleName(tr("Actions"));
    addWideNote(tr("What Return does with the selected row, depending on the keys held with it. "
                   "Where several actions have the same keys the first one is carried out."));
    addWide(actionsTableView);
    buildControls();
    note_ = addWideNote();

    connect(actionsTableView, &FormTable::selectedRowChanged, this,
            &ActionPreferencesViewController::enableControls);
    connect(actionsTableView, &FormTable::removalRequested, this,
            [this] { segmentClicked(Segment::remove); });
    connect(actionsTableView, &QTableView::activated, this,
            [this] { segmentClicked(Segment::change); });
    enableControls();
}

void ActionPreferencesViewController::buildControls()
{
    auto *controls = new QWidget(this);
    auto *line = new QHBoxLayout(controls);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(metrics::INSET);
    line->addWidget(actionAddRemoveSegmentedControl, 1);
    line->addWidget(restoreButton);
    addWide(controls);

    const auto joinMove = [this](Segment segment, const QString &name, Qt::Key key) {
        QAbstractButton *button = actionAddRemoveSegmentedControl->segment(segment);
        const QKeySequence keys(Qt::ALT | key);
        button->setAccessibleName(name);
        button->setToolTip(
            QStringLiteral("%1 (%2)").arg(name, keys.toString(QKeySequence::NativeText)));
        connect(new QShortcut(keys, actionsTableView, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, [this, segment] { segmentClicked(segment); });
    };
    joinMove(Segment::moveUp, tr("Move up"), Qt::Key_Up);
    joinMove(Segment::moveDown, tr("Move down"), Qt::Key_Down);
    connect(actionAddRemoveSegmentedControl, &SegmentedControl::segmentClicked, this,
            &ActionPreferencesViewController::segmentClicked);
    connect(restoreButton, &QPushButton::clicked, this,
            &ActionPreferencesViewController::askForRestoring);
}

void ActionPreferencesViewController::showStored()
{
    actionTable->reload();
    enableControls();
}

AddActionViewController *ActionPreferencesViewController::addActionViewController() const
{
    return window()->findChild<AddActionViewController *>();
}

void ActionPreferencesViewController::enableControls()
{
    const auto row = actionsTableView->selectedRow();
    SegmentedControl &segments = *actionAddRemoveSegmentedControl;
    segments.segment(Segment::remove)->setEnabled(row.has_value());
    segments.segment(Segment::change)->setEnabled(row.has_value());
    segments.segment(Segment::moveUp)->setEnabled(row && *row > 0);
    segments.segment(Segment::moveDown)->setEnabled(row && *row + 1 < actionsTableView->rowCount());
    restoreButton->setEnabled(!actionTable->areBuiltIn());
}

void ActionPreferencesViewController::segmentClicked(int segment)
{
    switch (segment) {
    case Segment::add:
        return openSheet({});
    case Segment::remove:
        return written(actionTable->removeSelected());
    case Segment::change:
        if (const auto action = actionTable->selectedAction())
            openSheet(action);
        return;
    case Segment::moveUp:
        return written(actionTable->moveSelected(-1));
    default:
        return written(actionTable->moveSelected(1));
    }
}

void ActionPreferencesViewController::openSheet(const std::optional<ActionModel> &changed)
{
    note_->sayFault({});
    if (addActionViewController() != nullptr)
        return;
    auto *sheet = new AddActionViewController(
        {.defaults = services_.defaults, .applications = services_.applications}, changed,
        window());
    connect(sheet, &AddActionViewController::actionStored, actionTable, &ActionTable::actionStored);
    connect(sheet, &QDialog::accepted, this, &ActionPreferencesViewController::enableControls);
    sheet->open();
}

void ActionPreferencesViewController::askForRestoring()
{
    FormSheet::confirm(tr("Set Actions Back"), tr("&Set Back"),
                       tr("Your list is replaced by the actions that Quillon came with. It cannot "
                          "be brought back."),
                       window(), [this] { written(actionTable->restoreBuiltIn()); });
}

void ActionPreferencesViewController::written(bool isStored)
{
    note_->sayFault(isStored ? QString() : writeFault());
    enableControls();
}

} // namespace quillon
