#include "app/preferences/ForgetUsesViewController.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/FormPane.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/PanelButton.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"
#include "matching/RecentAccessScore.h"

#include <limits>

namespace quillon {

namespace {

constexpr int TABLE_HEIGHT = 280;

} // namespace

ForgetUsesViewController::ForgetUsesViewController(RecentAccessScore &uses,
                                                   const PanelPalette &palette, QWidget *over)
    : FormSheet(tr("Forget Uses"), tr("&Done"), palette, over),
      usesTableView(new FormTable(QStringLiteral("UsesTableViewRowIdentifier"), &form())),
      forgetSegmentedControl(new SegmentedControl({tr("&Forget"), tr("Forget &All")}, &form())),
      uses_(uses)
{
    form().addWideNote(tr("The folders and files that you opened, and how often. Forgotten ones "
                          "stand in the list of matches where their names put them."));
    usesTableView->setFixedHeight(TABLE_HEIGHT);
    usesTableView->setAccessibleName(tr("Uses"));
    usesTableView->setPlaceholder(tr("Nothing has been opened yet."));
    form().addWide(usesTableView);
    form().addWide(forgetSegmentedControl);
    note_ = form().addWideNote();
    cancelButton().hide();
    connect(usesTableView, &FormTable::selectedRowChanged, this, [this] {
        forgetSegmentedControl->setSegmentEnabled(forgetOne,
                                                  usesTableView->selectedRow().has_value());
    });
    connect(usesTableView, &FormTable::removalRequested, this, [this] { forget(forgetOne); });
    connect(forgetSegmentedControl, &SegmentedControl::segmentClicked, this,
            &ForgetUsesViewController::forget);
    connect(this, &FormSheet::confirmed, this, &QDialog::accept);
    reload();
}

void ForgetUsesViewController::reload()
{
    paths_ = uses_.topScores(std::numeric_limits<int>::max());
    const auto snapshot = uses_.snapshot();
    QList<QList<FormTextRun>> rows;
    for (const std::string &path : paths_) {
        const auto uses = snapshot->counts.find(path);
        rows << QList<FormTextRun>{
            {.text = QString::fromStdString(path), .isBold = true},
            {.text = QStringLiteral(" – ") +
                     QString::number(uses == snapshot->counts.end() ? 0 : uses->second)}};
    }
    usesTableView->setRows(rows);
    forgetSegmentedControl->setSegmentEnabled(forgetOne, usesTableView->selectedRow().has_value());
    forgetSegmentedControl->setSegmentEnabled(forgetAll, !paths_.empty());
}

void ForgetUsesViewController::forget(int segment)
{
    const auto row = usesTableView->selectedRow();
    bool isStored = true;
    if (segment == forgetAll)
        isStored = uses_.resetScores();
    else if (row)
        isStored = uses_.forgetUses(paths_.at(static_cast<std::size_t>(*row)));
    note_->sayFault(isStored ? QString() : writeFault());
    reload();
}

} // namespace quillon
