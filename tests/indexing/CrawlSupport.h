#pragma once

#include "base/Mutex.h"
#include "base/Require.h"
#include "indexing/Crawler.h"

#include <algorithm>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace quillon {

/// Keeps what a crawl hands over as whole paths, with "file:" before the path of a file.
class RecordingSink : public CrawlSink
{
public:
    Token root(const std::string &path) override
    {
        const MutexLock lock(mutex_);
        rootPath = path;
        paths_.push_back(path == "/" ? "" : path);
        return 0;
    }
    void add(Token parent, std::span<Entry> entries) override
    {
        const MutexLock lock(mutex_);
        require(!entries.empty(), "a folder that keeps nothing is not handed over");
        require(parent < paths_.size(), "a folder comes before what is below it");
        require(given_.insert(parent).second, "a folder is handed over once");
        for (Entry &entry : entries) {
            const std::string path = paths_[parent] + "/" + std::string(entry.name);
            kept.insert(entry.isFolder ? path : "file:" + path);
            entry.token = static_cast<Token>(paths_.size());
            paths_.push_back(path);
        }
    }

    // The path of the root, which is read after the crawl.
    std::string rootPath;
    std::set<std::string> kept;

private:
    Mutex mutex_;
    std::vector<std::string> paths_ GUARDED_BY(mutex_);
    std::set<Token> given_ GUARDED_BY(mutex_);
};

/// The rule of SkipRules, implemented as it is stated and without memory.
struct PlainSkipRule
{
    std::vector<std::string> patterns;
    std::vector<std::string> includeFolders;
    /// Hidden folders below these are wanted.
    std::vector<std::string> withHidden = {};

    bool showsHidden(const std::string &folder) const
    {
        return std::ranges::any_of(withHidden, [&](const std::string &each) {
            return each == "/" || (folder + "/").starts_with(each + "/");
        });
    }
    bool skipsPath(const std::string &path) const
    {
        const auto pattern = std::ranges::find_if(patterns, [&](const std::string &part) {
            return path.find(part) != std::string::npos;
        });
        if (pattern == patterns.end())
            return false;
        for (const std::string &folder : includeFolders)
            if (folder.find(*pattern) != std::string::npos)
                return path.find(folder) == std::string::npos;
        return true;
    }
    bool skips(const std::string &path, const std::string &name) const
    {
        bool skip = false;
        for (const std::string &pattern : patterns) {
            const bool isName = std::ranges::find(patterns, name) != patterns.end();
            if (pattern.find('/') == std::string::npos)
                skip = skip || isName;
            else
                skip = skip || skipsPath(path) || isName;
        }
        return skip;
    }
};

} // namespace quillon
