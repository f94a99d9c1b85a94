#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;
class FolderLister;
class SearchBaseFinder;
class SkipRules;
class TaskQueue;

/// Adds folders to those that are searched, and says why one cannot be added. Main thread only.
class IncludeFolders
{
    Q_DECLARE_TR_FUNCTIONS(IncludeFolders)

public:
    struct Services
    {
        SearchBaseFinder &searchBaseFinder;
        const FolderIdentity &folderIdentity;
        FolderLister &folderLister;
        /// This queue asks the disk.
        TaskQueue &background;
        TaskQueue &main;
    };
    struct Outcome
    {
        std::vector<std::string> added;
        /// The text for the user: a sentence, and a line for each folder that was not added.
        QString faults;
    };

    explicit IncludeFolders(const Services &services) : services_(services) {}

    /// Adds the folders, which are given by their absolute paths, and then reports the result,
    /// unless the object that asked is destroyed by then. The services outlive what is on the
    /// queues.
    void add(std::vector<std::string> paths, QObject *asking,
             std::function<void(const Outcome &)> added) const;

private:
    Outcome added(const std::vector<std::string> &paths) const;
    QString fault(const std::string &path, const std::vector<std::string> &listed,
                  const SkipRules &rules) const;
    bool isSearchedAsPartOf(const std::string &folder, const std::string &path,
                            const SkipRules &rules) const;

    Services services_;
};

} // namespace quillon
