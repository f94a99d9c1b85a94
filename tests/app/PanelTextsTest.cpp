#include "app/panel/PanelTexts.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillon {

namespace {

struct DiskRow
{
    const char *name;
    const char *folder;
    const char *disk;

    friend std::ostream &operator<<(std::ostream &out, const DiskRow &row)
    {
        return out << row.name;
    }
};

class DiskRows : public testing::TestWithParam<DiskRow>
{};

TEST_P(DiskRows, areNamedAsTheUserKnowsThem)
{
    EXPECT_EQ(PanelTexts::diskName(GetParam().folder).toStdString(), GetParam().disk);
}

INSTANTIATE_TEST_SUITE_P(
    Folders, DiskRows,
    testing::Values(DiskRow{"mountedForAUser", "/run/media/alex/Backup/photos", "Backup"},
                    DiskRow{"mountedForAUserOfOldSystems", "/media/alex/Backup", "Backup"},
                    DiskRow{"mountedByHand", "/mnt/nas/music", "nas"},
                    DiskRow{"elsewhere", "/home/alex/remote", "remote"},
                    DiskRow{"noDisk", "/media/alex", "alex"},
                    DiskRow{"almostAPlace", "/mnts/nas/music", "music"}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace

} // namespace quillon
