#include "app/preferences/ForgetFoldersViewController.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/FormPane.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"
#include "matching/RecentAccessScore.h"
#include "prefs/KeptFolders.h"
#include "results/RowText.h"

#include <QPushButton>

#include <limits>
#include <utility>

namespace quillon {

namespace {

constexpr int TABLE_HEIGHT = 280;

} // namespace

ForgetFoldersViewController::ForgetFoldersViewController(RecentAccessScore &uses, KeptFolders &kept,
                                                         QWidget *over)
    : FormSheet(tr("Forget Folders"), tr("&Done"), over),
      usesTableView(new FormTable(QStringLiteral("UsesTableViewRowIdentifier"), &form())),
      forgetSegmentedControl(new SegmentedControl(
          {tr("&Forget"), tr("Do &Not Keep on Top"), tr("Forget &All")}, &form())),
      uses_(uses),
      kept_(kept)
{
    form().addWideNote(tr("The folders and files that you keep on top, and those that you opened, "
                          "and how often. Forgotten ones stand in the list of matches where their "
                          "names put them."));
    usesTableView->setFixedHeight(TABLE_HEIGHT);
    usesTableView->setAccessibleName(tr("Kept and opened folders"));
    usesTableView->setPlaceholder(tr("Nothing has been opened yet."));
    form().addWide(usesTableView);
    form().addWide(forgetSegmentedControl);
    note_ = form().addWideNote();
    cancelButton().hide();
    connect(usesTableView, &FormTable::selectedRowChanged, this,
            &ForgetFoldersViewController::enableSegments);
    connect(usesTableView, &FormTable::removalRequested, this, [this] { forget(forgetOne); });
    connect(forgetSegmentedControl, &SegmentedControl::segmentClicked, this,
            &ForgetFoldersViewController::forget);
    connect(this, &FormSheet::confirmed, this, &QDialog::accept);
    reload();
}

void ForgetFoldersViewController::reload()
{
    paths_ = kept_.paths();
    keptCount_ = paths_.size();
    for (std::string &path : uses_.topScores(std::numeric_limits<int>::max()))
        if (!kept_.contains(path))
            paths_.push_back(std::move(path));
    const auto counts = uses_.snapshot();
    QList<QList<FormTextRun>> rows;
    for (std::size_t i = 0; i < paths_.size(); ++i) {
        QStringList words;
        if (i < keptCount_)
            words << tr("kept on top");
        if (const auto uses = counts->counts.find(paths_[i]); uses != counts->counts.end())
            words << QString::number(uses->second);
        rows << QList<FormTextRun>{{.text = displayText(paths_[i]), .isBold = true},
                                   {.text = QStringLiteral(" – ") + words.join(u", ")}};
    }
    usesTableView->setRows(rows);
    enableSegments();
}

void ForgetFoldersViewController::enableSegments()
{
    const auto row = usesTableView->selectedRow();
    forgetSegmentedControl->segment(forgetOne)->setEnabled(row.has_value());
    forgetSegmentedControl->segment(releaseOne)
        ->setEnabled(row && static_cast<std::size_t>(*row) < keptCount_);
    forgetSegmentedControl->segment(forgetAll)->setEnabled(!paths_.empty());
}

void ForgetFoldersViewController::forget(int segment)
{
    const auto row = usesTableView->selectedRow();
    bool isStored = true;
    if (segment == forgetAll) {
        isStored = kept_.releaseAll() && uses_.resetScores();
    } else if (row) {
        const std::string &path = paths_.at(static_cast<std::size_t>(*row));
        isStored = kept_.release(path) && (segment == releaseOne || uses_.forgetUses(path));
    }
    note_->sayFault(isStored ? QString() : writeFault());
    reload();
}

} // namespace quillon
