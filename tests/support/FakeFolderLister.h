#pragma once

#include "platform/FolderLister.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillon {

/// Folders in memory, from "/" down, to be listed by a crawl.
class FakeFolderLister final : public FolderLister
{
public:
    /// Adds the folder at the absolute path and those above it. It is not called while a crawl
    /// runs.
    void add(std::string_view path)
    {
        while (path.size() > 1) {
            const std::size_t slash = path.rfind('/');
            const std::string_view parent = slash == 0 ? "/" : path.substr(0, slash);
            names_[std::string(path)];
            names_[std::string(parent)].emplace(path.substr(slash + 1));
            path = parent;
        }
    }

    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted,
                                     std::error_code &error) override
    {
        if (onOpen)
            onOpen(path);
        const bool isSilent = silent.contains(path);
        const auto found = names_.find(path);
        if (!isSilent && found != names_.end())
            return std::make_unique<Folder>(*this, path, found->second);
        error = std::make_error_code(isSilent ? std::errc::timed_out
                                              : std::errc::no_such_file_or_directory);
        return nullptr;
    }

    Kind kind(const std::string &path) override
    {
        if (unanswered.contains(path))
            return Kind::unknown;
        const std::size_t dot = path.ends_with("/.") ? 2 : 0;
        return names_.contains(path.substr(0, path.size() - dot)) ? Kind::folder : Kind::nothing;
    }

    /// Paths for which kind() returns unknown.
    std::set<std::string> unanswered;
    /// Folders that do not answer when they are opened.
    std::set<std::string> silent;
    /// Folders that are opened and cannot be read.
    std::set<std::string> broken;
    /// The stamps of some folders. Those of the others never change and do not last.
    std::map<std::string, FolderStamp> stamps;
    /// The threads of the crawl call this with each path to open.
    std::function<void(const std::string &path)> onOpen;
    /// The threads of the crawl call this with each path when it is read for the first time.
    std::function<void(const std::string &path)> onRead;

private:
    class Folder final : public OpenFolder
    {
    public:
        Folder(FakeFolderLister &lister, std::string path, const std::set<std::string> &names)
            : lister_(lister), path_(std::move(path)), names_(names)
        {}

        bool read(FolderBatch &batch, std::error_code &error) override
        {
            batch.entries.clear();
            if (lister_.broken.contains(path_)) {
                error = std::make_error_code(std::errc::io_error);
                return false;
            }
            if (std::exchange(isRead_, true))
                return false;
            if (lister_.onRead)
                lister_.onRead(path_);
            for (const std::string &name : names_)
                batch.entries.push_back({name, true});
            return !names_.empty();
        }
        std::unique_ptr<OpenFolder> open(const std::string &name,
                                         std::error_code &error) const override
        {
            return lister_.open((path_ == "/" ? path_ : path_ + "/") + name, Wanted::subfolders,
                                error);
        }
        FolderKind kind(const std::string &name) const override
        {
            return lister_.kind((path_ == "/" ? path_ : path_ + "/") + name);
        }
        FolderStamp stamp() const override { return lister_.stampOf(path_); }
        FolderStamp childStamp(const std::string &name) const override
        {
            const std::string path = (path_ == "/" ? path_ : path_ + "/") + name;
            return lister_.kind(path) == Kind::folder ? lister_.stampOf(path) : FolderStamp();
        }

    private:
        FakeFolderLister &lister_;
        const std::string path_;
        const std::set<std::string> &names_;
        bool isRead_ = false;
    };

    FolderStamp stampOf(const std::string &path) const
    {
        const auto found = stamps.find(path);
        return found != stamps.end() ? found->second
                                     : FolderStamp{1, std::hash<std::string>()(path) | 1, 0};
    }

    std::map<std::string, std::set<std::string>> names_;
};

} // namespace quillon
