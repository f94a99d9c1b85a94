#pragma once

#include "app/preferences/search/ListedLocation.h"
#include "app/widgets/FormPane.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/IncludeFolders.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;

namespace quillon {

class FolderIdentity;
class FolderLister;
class FolderPicker;
class FormNote;
class FormTable;
class IndexStatusNote;
class SearchBase;
class SearchBaseFinder;
class SegmentedControl;
class TaskQueue;

/// What is searched: the list of search locations, what comes into it and goes, and how the index
/// stands. Main thread only.
class SearchPreferencesViewController : public FormPane, private SearchBaseBuildObserver
{
    Q_OBJECT

public:
    struct Services
    {
        SearchBase &searchBase;
        SearchBaseBuilder &builder;
        SearchBaseFinder &searchBaseFinder;
        const FolderIdentity &folderIdentity;
        FolderLister &folderLister;
        FolderPicker &folderPicker;
        TaskQueue &background;
        TaskQueue &main;
    };

    /// All services outlive this object.
    explicit SearchPreferencesViewController(const Services &services, QWidget *parent = nullptr);
    ~SearchPreferencesViewController() override;

    void showStored() override;

    /// Searches these folders too, as if the user had chosen them.
    void addFolders(const std::vector<std::string> &paths);
    /// Asks for a pattern, proposes the folder's path, and rebuilds the index once it is added.
    void leaveOut(const std::string &folder);

    FormTable *const searchLocationsTableView;
    /// Segment 0 opens the menu of what can be added, segment 1 removes the selected location.
    SegmentedControl *const searchLocationsSegmentedControl;
    /// It is shown while the settings say something else than they did for the index.
    QWidget *const rebuildFlagImage;
    QPushButton *const rebuildButton;

Q_SIGNALS:
    /// The user wants the index to be built anew.
    void rebuildRequested();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    class FlagImage;
    // The segments of the control.
    static constexpr int ADD = 0;
    static constexpr int REMOVE = 1;

    void buildBegan() override;
    void buildEnded() override;

    void buildMenu();
    void buildControls();
    void chooseFolders();
    void foldersAdded(const IncludeFolders::Outcome &outcome);
    void excludePattern(const std::string &proposed, bool isRebuilt);
    void includeExtension();
    /// Shows the list, and in it what was added.
    void showAdded(std::shared_ptr<const SearchBaseLocation> location);
    void removeSelected();
    void searchHidden(int row, bool isWanted);
    void showLocations(std::vector<ListedLocation> locations, SearchLocations stored);
    void updateFlag();

    Services services_;
    QLabel *flagLabel_;
    FormNote *note_;
    IndexStatusNote *statusNote_;
    /// The locations in the order of the table's rows.
    std::vector<ListedLocation> locations_;
    /// What the settings say; known once the pane was shown.
    std::optional<SearchLocations> stored_;
    /// What was to be removed, until the list shows whether it was.
    std::shared_ptr<const SearchBaseLocation> removed_;
    /// Holds the folder that was added last until the list shows it.
    std::shared_ptr<const SearchBaseLocation> added_;
    /// Counts the times that the list was asked for: only the last answer is shown.
    unsigned asked_ = 0;
};

} // namespace quillon
