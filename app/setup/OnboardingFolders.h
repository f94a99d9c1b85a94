#pragma once

#include "app/setup/FolderCounter.h"
#include "app/widgets/SetupView.h"
#include "indexing/IncludeFolders.h"

#include <functional>
#include <string>
#include <vector>

class QPushButton;

namespace quillon {

class FolderChoice;
class FolderChoices;
class FolderPicker;
class FormNote;
class Places;

/// The part of the set-up that chooses the folders to search. The home folder is ticked at first,
/// unless folders are stored already. What the user ticks is stored at once. Main thread only.
class OnboardingFolders : public SetupView
{
    Q_OBJECT

public:
    struct Services
    {
        SearchBaseFinder &searchBaseFinder;
        const FolderIdentity &folderIdentity;
        FolderLister &folderLister;
        const Places &places;
        FolderPicker &folderPicker;
        TaskQueue &background;
        /// Folders are counted on this queue.
        TaskQueue &counting;
        TaskQueue &main;
    };

    /// All services outlive this object. The home folder is given by its absolute path. The Tab key
    /// leads to the folders from the control before them.
    OnboardingFolders(const Services &services, const std::string &home, QWidget *controlBefore,
                      QWidget *parent);

    /// Offers the home folder, ticked. It is called once the controls around this object are made,
    /// since the Tab key would lead to them first otherwise.
    void offerHome();
    /// Returns the number of ticked folders.
    std::size_t chosenCount() const;
    /// Searches these folders too, as if the user had chosen them.
    void addFolders(const std::vector<std::string> &paths);
    /// Shows what is stored and which disks there are, and counts the folders until stop() is
    /// called.
    void start();
    void stop();
    /// Shows what has been counted by now.
    void updateCounts();
    /// Stores the ticked folders that are not stored yet. Then calls back, unless this object is
    /// destroyed by then: with true when all of them are stored.
    void storeTicked(std::function<void(bool isComplete)> finished);

Q_SIGNALS:
    /// Another number of folders is ticked.
    void chosenChanged();

private:
    class Checkmark;

    void buildChooser();
    /// Calls back on the main thread, unless this object is destroyed by then.
    void readStored(std::function<void(const std::vector<std::string> &)> read);
    void showStored();
    void offerDisks();
    /// Calls back on the main thread, unless this object is destroyed by then.
    void include(std::vector<std::string> paths,
                 std::function<void(const IncludeFolders::Outcome &)> added);
    void setChosen(FolderChoice *choice, bool isChosen);
    void chooseFolders();
    void refresh();

    Services services_;
    const std::string home_;
    FolderChoices *choices_;
    Checkmark *checkmarkImageView_ = nullptr;
    QLabel *chooseFolderDoneLabel_ = nullptr;
    FormNote *note_ = nullptr;
    /// Counts the user's changes of the boxes and the readings of the stored folders, so that an
    /// old reading does not undo a newer click.
    int changes_ = 0;
};

} // namespace quillon
