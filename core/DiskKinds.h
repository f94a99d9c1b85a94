#pragma once

#include "indexing/NameKinds.h"
#include "platform/FolderLister.h"

#include <set>
#include <string>
#include <vector>

namespace quillon {

class SkipRules;

/// Asks the disk what is at a path, as far as the index takes it up. What is not to be indexed
/// counts as nothing.
class DiskKinds
{
public:
    using Kind = FolderLister::Kind;

    /// The extensions are those of the files that are indexed. The roots are the include folders,
    /// ascending. They and the rules outlive this object.
    DiskKinds(FolderLister &lister, const std::set<std::string> &extensions,
              const std::vector<std::string> &roots, const SkipRules &rules)
        : lister_(lister), extensions_(extensions), roots_(roots), rules_(rules)
    {}

    /// Returns the kind under which the path is indexed. A file is indexed only with an included
    /// extension, a folder only where no pattern skips it, and an include folder may be a link.
    Kind kindOf(const std::string &path) const;
    /// Returns the same, but nothing where a link is on the way from the include folder, wherever
    /// that link leads.
    Kind kindWithoutLinks(const std::string &path) const;
    /// Returns true when the nearest include folder at or above the path is away.
    bool isInAwayFolder(const std::string &path) const;

private:
    bool isRoot(const std::string &path) const;
    bool isSkipped(const std::string &folder) const;

    FolderLister &lister_;
    const ExtensionSet extensions_;
    const std::vector<std::string> &roots_;
    const SkipRules &rules_;
};

} // namespace quillon
