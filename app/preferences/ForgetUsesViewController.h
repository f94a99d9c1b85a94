#pragma once

#include "app/widgets/FormSheet.h"

#include <string>
#include <vector>

namespace quillon {

class FormNote;
class FormTable;
class RecentAccessScore;
class SegmentedControl;

/// The sheet in which the user deletes the counts of how often folders were opened, those of one
/// folder or all.
class ForgetUsesViewController : public FormSheet
{
    Q_OBJECT

public:
    enum Segment
    {
        forgetOne,
        forgetAll,
    };

    /// The uses outlive this object, which deletes itself when it is closed.
    ForgetUsesViewController(RecentAccessScore &uses, const PanelPalette &palette, QWidget *over);

    FormTable *const usesTableView;
    SegmentedControl *const forgetSegmentedControl;

private:
    void reload();
    void forget(int segment);

    RecentAccessScore &uses_;
    FormNote *note_ = nullptr;
    /// The paths of the rows, which may hold any bytes.
    std::vector<std::string> paths_;
};

} // namespace quillon
