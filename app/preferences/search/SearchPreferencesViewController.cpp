#include "app/preferences/search/SearchPreferencesViewController.h"

#include "app/preferences/search/AddExcludePatternSearchLocation.h"
#include "app/preferences/search/AddIncludeFilePatternViewController.h"
#include "app/preferences/search/IndexStatusNote.h"
#include "app/widgets/FolderChooser.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormTable.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/SegmentedControl.h"
#include "app/widgets/WriteFault.h"
#include "base/TaskQueue.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"

#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

constexpr int FLAG = 20;

} // namespace

/// An arrow that goes round.
class SearchPreferencesViewController::FlagImage : public QWidget
{
public:
    explicit FlagImage(QWidget *parent) : QWidget(parent) { setFixedSize(FLAG, FLAG); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Link), 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(QRectF(4, 4, 12, 12), 60 * 16, 270 * 16);
        QPainterPath tip(QPointF(12.2, 0.8));
        tip.lineTo(17.4, 5.2);
        tip.lineTo(11.2, 7.6);
        tip.closeSubpath();
        painter.fillPath(tip, palette().color(QPalette::Link));
    }
};

SearchPreferencesViewController::SearchPreferencesViewController(const Services &services,
                                                                 QWidget *parent)
    : FormPane(parent),
      searchLocationsTableView(
          new FormTable(QStringLiteral("SearchLocationsTableViewRowIdentifier"), this)),
      searchLocationsSegmentedControl(new SegmentedControl({tr("A&dd"), tr("&Remove")}, this)),
      rebuildFlagImage(new FlagImage(this)),
      rebuildButton(pushButton(tr("Re&build Now"), ButtonRank::control, this)),
      services_(services),
      flagLabel_(new QLabel(tr("Takes effect after a rebuild"), this))
{
    setAcceptDrops(true);
    searchLocationsTableView->setAccessibleName(tr("Search locations"));
    searchLocationsTableView->setPlaceholder(tr("Drop folders here to search them"));
    addWideNote(tr("What is searched, and what is left out of it. Folders can be dropped here."));
    addWide(searchLocationsTableView);
    buildMenu();
    buildControls();
    note_ = addWideNote();
    statusNote_ = new IndexStatusNote(services_.searchBase, services_.builder, this);
    addWideNote(statusNote_);
    services_.builder.addObserver(*this);
    updateFlag();
}

SearchPreferencesViewController::~SearchPreferencesViewController()
{
    services_.builder.removeObserver(*this);
}

void SearchPreferencesViewController::buildMenu()
{
    auto *menu = new QMenu(this);
    menu->addAction(tr("Add Search Folder (recursive search)"), this,
                    &SearchPreferencesViewController::chooseFolders);
    menu->addAction(tr("Exclude Folders Matching Pattern"), this,
                    [this] { excludePattern({}, false); });
    menu->addAction(tr("Include Files with Extension"), this,
                    &SearchPreferencesViewController::includeExtension);
    searchLocationsSegmentedControl->segment(ADD)->setMenu(menu);
}

void SearchPreferencesViewController::buildControls()
{
    auto *controls = new QWidget(this);
    auto *line = new QHBoxLayout(controls);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(metrics::INSET);
    line->addWidget(searchLocationsSegmentedControl, 1);
    line->addWidget(rebuildFlagImage);
    line->addWidget(flagLabel_);
    line->addWidget(rebuildButton);
    addWide(controls);

    const auto enableRemoval = [this] {
        searchLocationsSegmentedControl->segment(REMOVE)->setEnabled(
            searchLocationsTableView->selectedRow().has_value());
    };
    connect(searchLocationsTableView, &FormTable::selectedRowChanged, this, enableRemoval);
    connect(searchLocationsTableView, &FormTable::removalRequested, this,
            &SearchPreferencesViewController::removeSelected);
    connect(searchLocationsTableView, &FormTable::tickBoxToggled, this,
            &SearchPreferencesViewController::searchHidden);
    connect(searchLocationsSegmentedControl, &SegmentedControl::segmentClicked, this,
            [this](int segment) {
                if (segment == REMOVE)
                    removeSelected();
            });
    connect(rebuildButton, &QPushButton::clicked, this,
            &SearchPreferencesViewController::rebuildRequested);
    enableRemoval();
}

// The list

void SearchPreferencesViewController::showStored()
{
    if (!isVisible())
        return;
    services_.background.post([services = services_, asked = ++asked_, self = QPointer(this)] {
        const SearchLocations stored = SearchLocations::of(services.searchBaseFinder);
        services.main.post(
            [locations = listed(stored, services.searchBaseFinder), stored, asked, self] {
                if (self && asked == self->asked_)
                    self->showLocations(locations, stored);
            });
    });
}

void SearchPreferencesViewController::showLocations(std::vector<ListedLocation> locations,
                                                    SearchLocations stored)
{
    locations_ = std::move(locations);
    stored_ = std::move(stored);
    QList<QList<FormTextRun>> rows;
    bool isStillThere = false;
    for (const ListedLocation &listed : locations_) {
        rows << listed.label();
        isStillThere = isStillThere || (removed_ && listed.names(*removed_));
    }
    searchLocationsTableView->setRows(rows);
    for (int row = 0; row < rows.size(); ++row)
        if (const auto isTicked = locations_.at(static_cast<std::size_t>(row)).searchesHidden)
            searchLocationsTableView->setTickBox(row, tr("Search hidden folders too"), *isTicked);
    if (isStillThere)
        note_->sayFault(writeFault());
    removed_.reset();
    const auto added = std::ranges::find_if(locations_, [this](const ListedLocation &listed) {
        return added_ && listed.names(*added_);
    });
    if (added != locations_.end())
        searchLocationsTableView->showRow(static_cast<int>(added - locations_.begin()));
    added_.reset();
    updateFlag();
}

void SearchPreferencesViewController::removeSelected()
{
    const auto row = searchLocationsTableView->selectedRow();
    if (!row)
        return;
    note_->sayFault({});
    removed_ = locations_.at(static_cast<std::size_t>(*row)).location;
    // Only the disk can say which entries lead to the folder.
    services_.background.post([services = services_, removed = removed_, self = QPointer(this)] {
        services.searchBaseFinder.remove(*removed);
        services.main.post([self] {
            if (self)
                self->showStored();
        });
    });
}

void SearchPreferencesViewController::searchHidden(int row, bool isWanted)
{
    note_->sayFault({});
    const std::string folder = locations_.at(static_cast<std::size_t>(row)).location->mainText();
    // Only the disk can say which entries lead to the folder.
    services_.background.post([services = services_, folder, isWanted, self = QPointer(this)] {
        const bool isStored = services.searchBaseFinder.bookmarks.searchHidden(folder, isWanted);
        services.main.post([isStored, self] {
            if (self && !isStored)
                self->note_->sayFault(writeFault());
            if (self)
                self->showStored();
        });
    });
}

void SearchPreferencesViewController::chooseFolders()
{
    askForFolders(services_.folderPicker, tr("Choose the folders to search"), this,
                  [this](const auto &paths) { addFolders(paths); });
}

void SearchPreferencesViewController::addFolders(const std::vector<std::string> &paths)
{
    services_.background.post([services = services_, paths, self = QPointer(this)] {
        const IncludeFolders include(services.searchBaseFinder, services.folderIdentity,
                                     services.folderLister);
        services.main.post([outcome = include.add(paths), self] {
            if (self)
                self->foldersAdded(outcome);
        });
    });
}

void SearchPreferencesViewController::foldersAdded(const IncludeFolders::Outcome &outcome)
{
    note_->sayFault(refusalText(outcome.refused));
    showAdded(outcome.added.empty()
                  ? nullptr
                  : std::make_shared<IncludePathSearchBaseLocation>(outcome.added.back()));
}

void SearchPreferencesViewController::showAdded(std::shared_ptr<const SearchBaseLocation> location)
{
    added_ = std::move(location);
    showStored();
}

void SearchPreferencesViewController::leaveOut(const std::string &folder)
{
    excludePattern(folder, true);
}

void SearchPreferencesViewController::excludePattern(const std::string &proposed, bool isRebuilt)
{
    auto *sheet = new AddExcludePatternSearchLocation(
        {.searchBaseFinder = services_.searchBaseFinder,
         .index = services_.searchBase.searchBaseMatcher().index(),
         .background = services_.background,
         .main = services_.main},
        proposed,
        [this, isRebuilt](const std::string &pattern) {
            showAdded(std::make_shared<ExcludePatternSearchBaseLocation>(pattern));
            if (isRebuilt)
                services_.builder.start();
        },
        window());
    sheet->open();
}

void SearchPreferencesViewController::includeExtension()
{
    auto *sheet = new AddIncludeFilePatternViewController(
        services_.searchBaseFinder,
        [this](const std::string &extension) {
            showAdded(std::make_shared<IncludeFilePatternSearchBaseLocation>(extension));
        },
        window());
    sheet->open();
}

void SearchPreferencesViewController::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedPaths(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void SearchPreferencesViewController::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    addFolders(draggedPaths(*event->mimeData()));
}

// The state of the index

void SearchPreferencesViewController::buildBegan()
{
    updateFlag();
    statusNote_->refresh();
}

void SearchPreferencesViewController::buildEnded()
{
    updateFlag();
    statusNote_->refresh();
}

void SearchPreferencesViewController::updateFlag()
{
    const auto &build = services_.builder.lastBuild();
    const bool isChanged =
        stored_ && !services_.builder.isBuilding() && (!build || build->locations != *stored_);
    rebuildFlagImage->setVisible(isChanged);
    flagLabel_->setVisible(isChanged);
    rebuildButton->setEnabled(!services_.builder.isBuilding());
}

void SearchPreferencesViewController::showEvent(QShowEvent *event)
{
    FormPane::showEvent(event);
    showStored();
    updateFlag();
}

void SearchPreferencesViewController::hideEvent(QHideEvent *event)
{
    note_->sayFault({});
    FormPane::hideEvent(event);
}

} // namespace quillon
