#pragma once

#include <QCoreApplication>
#include <QString>

#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;
class FolderLister;
class SearchBaseFinder;
class SkipRules;

/// Adds folders to those that are searched, and says why one cannot be. Looks at the disk, so not
/// on the main thread; safe from every other.
class IncludeFolders
{
    Q_DECLARE_TR_FUNCTIONS(IncludeFolders)

public:
    struct Services
    {
        SearchBaseFinder &searchBaseFinder;
        const FolderIdentity &folderIdentity;
        FolderLister &folderLister;
    };
    struct Outcome
    {
        std::vector<std::string> added;
        /// For the user, a sentence and a line for each folder that was not added.
        QString faults;
    };

    explicit IncludeFolders(const Services &services) : services_(services) {}

    /// Absolute paths.
    Outcome add(const std::vector<std::string> &paths) const;

private:
    QString fault(const std::string &path, const std::vector<std::string> &listed,
                  const SkipRules &rules) const;
    bool isSearchedAsPartOf(const std::string &folder, const std::string &path,
                            const SkipRules &rules) const;

    Services services_;
};

} // namespace quillon
