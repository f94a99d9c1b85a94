#pragma once

#include "base/DefaultsStore.h"

#include <optional>
#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;

/// The user's settings, which this program never writes. Include folders from the command line
/// replace the user's.
class ReadOnlySettings final : public DefaultsStore
{
public:
    /// The user's settings outlive this object.
    explicit ReadOnlySettings(const DefaultsStore &user) : user_(user) {}

    /// Makes these folders, given by absolute paths, the only include folders. Hidden folders below
    /// them are searched if that is wanted here, else where the user's settings say so.
    void includeOnly(const std::vector<std::string> &folders, bool withHidden = false);

    std::optional<DefaultsValue> value(std::string_view key) const override;
    bool set(std::string_view, const DefaultsValue &) override { return false; }
    bool remove(std::string_view) override { return false; }
    bool removeAll() override { return false; }
    bool synchronize() override { return true; }
    std::optional<DefaultsFault> fault() const override { return user_.fault(); }

private:
    const DefaultsStore &user_;
    std::optional<DefaultsDictionary> bookmarks_;
    std::optional<DefaultsDictionary> withHidden_;
};

/// Returns the absolute paths of folders named on the command line. A folder that cannot be read is
/// left out with a complaint, and failed is set.
std::vector<std::string> readableFolders(const std::vector<std::string> &typed,
                                         const FolderIdentity &identity, bool &failed);

} // namespace quillon
