#pragma once

#include "app/widgets/FormSheet.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

class FormNote;
class FormTable;
class KeptFolders;
class RecentAccessScore;
class SegmentedControl;

/// The sheet of the folders that were opened or are kept on top. The user has one of them or all
/// forgotten there, or keeps one on top no longer.
class ForgetFoldersViewController : public FormSheet
{
    Q_OBJECT

public:
    enum Segment
    {
        forgetOne,
        releaseOne,
        forgetAll,
    };

    /// The uses and the kept folders outlive this object, which deletes itself when it is closed.
    ForgetFoldersViewController(RecentAccessScore &uses, KeptFolders &kept, QWidget *over);

    FormTable *const usesTableView;
    SegmentedControl *const forgetSegmentedControl;

private:
    void reload();
    void enableSegments();
    void forget(int segment);

    RecentAccessScore &uses_;
    KeptFolders &kept_;
    FormNote *note_ = nullptr;
    /// The paths of the rows, which may hold any bytes. Those that are kept on top come first.
    std::vector<std::string> paths_;
    std::size_t keptCount_ = 0;
};

} // namespace quillon
