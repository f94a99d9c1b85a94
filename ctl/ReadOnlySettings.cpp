#include "ctl/ReadOnlySettings.h"

#include "ctl/CommandLine.h"
#include "ctl/Output.h"
#include "platform/FolderIdentity.h"
#include "prefs/PreferenceKeys.h"

#include <utility>

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

std::vector<std::string> readableFolders(const std::vector<std::string> &typed,
                                         const FolderIdentity &identity, bool &failed)
{
    std::vector<std::string> folders;
    for (const std::string &name : typed) {
        std::string path = absolutePath(name);
        if (identity.presence(path) == FolderPresence::there) {
            folders.push_back(std::move(path));
        } else {
            complain(name + ": is no folder that can be read");
            failed = true;
        }
    }
    return folders;
}

} // namespace quillon
