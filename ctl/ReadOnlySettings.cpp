#include "ctl/ReadOnlySettings.h"

#include "prefs/PreferenceKeys.h"

namespace quillon {

void ReadOnlySettings::includeOnly(const std::vector<std::string> &folders, bool withHidden)
{
    // A path alone works as a bookmark.
    bookmarks_.emplace();
    for (const std::string &folder : folders)
        bookmarks_->insert_or_assign(folder, DefaultsValue{DefaultsData{folder}});
    if (!withHidden)
        return;
    withHidden_.emplace();
    for (const std::string &folder : folders)
        withHidden_->insert_or_assign(folder, DefaultsValue{true});
}

std::optional<DefaultsValue> ReadOnlySettings::value(std::string_view key) const
{
    if (bookmarks_ && key == PreferenceKeys::BOOKMARKS)
        return DefaultsValue{*bookmarks_};
    if (withHidden_ && key == PreferenceKeys::SEARCH_HIDDEN_FOLDERS)
        return DefaultsValue{*withHidden_};
    return user_.value(key);
}

} // namespace quillon
