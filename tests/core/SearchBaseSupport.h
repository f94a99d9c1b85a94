#pragma once

#include "base/InlineTaskQueue.h"
#include "core/SearchBase.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/FrontItems.h"
#include "matching/FuzzyMatch.h"
#include "matching/RecentAccessScore.h"
#include "platform/CacheFile.h"
#include "platform/FolderLister.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeFolderLister.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// The front window's items as a test sets them. At first there are none.
struct FakeFrontItems final : FrontItemsSource
{
    bool isFinderFrontmost() const override { return isFrontmost; }
    FrontItems frontItems() const override
    {
        return {.cachedMatcher = matcher,
                .cachedFilenameToPathMapping =
                    std::make_shared<FrontItems::FilenameToPathMapping>(paths)};
    }

    bool isFrontmost = false;
    std::shared_ptr<FuzzyMatch> matcher;
    FrontItems::FilenameToPathMapping paths;
};

/// Identifies folders on the disk, and reports each question before it answers.
class ObservedFolderIdentity final : public FolderIdentity
{
public:
    FolderPresence presence(const std::string &path) const override
    {
        return asked().presence(path);
    }
    std::optional<FolderId> identify(const std::string &path) const override
    {
        return asked().identify(path);
    }
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override
    {
        return asked().find(parent, id);
    }
    std::function<void()> onAsked;

private:
    const FolderIdentity &asked() const
    {
        if (onAsked)
            onAsked();
        return disk_;
    }
    StatxFolderIdentity disk_;
};

/// A search base with everything it works with, over the folders that a lister shows.
template <typename Lister>
struct SearchBaseOver
{
    SearchBaseOver() = default;
    explicit SearchBaseOver(const SearchBaseWatcher::Services &howToWatch) : watching(howToWatch) {}
    /// The index is kept in the file. By this clock, everything on the disk is old.
    explicit SearchBaseOver(CacheFile &file,
                            const SearchBaseWatcher::Services *howToWatch = nullptr)
        : watching(howToWatch != nullptr ? std::optional(*howToWatch) : std::nullopt), kept(&file)
    {}

    void includeFolders(const std::vector<std::string> &paths)
    {
        DefaultsDictionary bookmarks;
        for (const std::string &path : paths)
            bookmarks.emplace(path, DefaultsValue{DefaultsData{path}});
        store.set("qln-bookmarks", {bookmarks});
    }
    /// Returns the lines of a build. Neighbouring lines that begin with the same "Processing "
    /// count as one.
    std::vector<std::string> build(const std::stop_token &stop = {})
    {
        std::vector<std::string> lines;
        searchBase.build(
            [&](const std::string &line) {
                const bool isProcessing = line.starts_with("Processing ");
                if (!isProcessing || lines.empty() || lines.back() != "Processing")
                    lines.push_back(isProcessing ? "Processing" : line);
            },
            stop);
        return lines;
    }
    /// Returns every text that searches find.
    std::vector<std::string> indexed() const
    {
        std::vector<std::string> texts;
        for (const FuzzyMatchResult &match : matcher.match("", matcher.count()))
            texts.push_back(match.text());
        return texts;
    }

    FakeDefaultsStore store;
    ObservedFolderIdentity identity;
    SearchBaseFinder finder{store, identity};
    DefaultsRecentAccessScoreDataStore counts{store};
    RecentAccessScore score{counts};
    FuzzyMatch matcher{&score};
    Lister lister;
    CapturedOutput output;
    SearchBaseLogger logger{store, output.stream()};
    InlineTaskQueue queue;
    FakeFrontItems front;
    std::optional<SearchBaseWatcher::Services> watching;
    CacheFile *kept = nullptr;
    std::int64_t now = std::int64_t{4'000'000'000} * 1'000'000'000;
    SearchBase searchBase{&front,
                          finder,
                          matcher,
                          {.folderLister = lister,
                           .logger = logger,
                           .mainQueue = queue,
                           .watching = watching,
                           .keptIndex = kept,
                           .wallClock = [this] { return now; }}};
};

} // namespace quillon
