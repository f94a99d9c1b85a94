#include "ctl/ReadOnlySettings.h"

#include "prefs/PreferenceKeys.h"

namespace quillon {

void ReadOnlySettings::includeOnly(const std::vector<std::string> &folders)
{
    // A path alone works as a bookmark.
    bookmarks_.emplace();
    for (const std::string &folder : folders)
        bookmarks_->insert_or_assign(folder, DefaultsValue{DefaultsData{folder}});
}

std::optional<DefaultsValue> ReadOnlySettings::value(std::string_view key) const
{
    if (bookmarks_ && key == PreferenceKeys::BOOKMARKS)
        return DefaultsValue{*bookmarks_};
    return user_.value(key);
}

} // namespace quillon
