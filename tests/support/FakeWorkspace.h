#pragma once

#include "platform/Workspace.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace quillon {

/// A desktop on which everything is a folder behind no link, unless a test says otherwise, and the
/// file manager opens folders.
class FakeWorkspace final : public Workspace
{
public:
    std::vector<std::string> opened;
    std::set<std::string> files;
    std::map<std::string, std::string> links;
    std::vector<std::string> openedLinks;
    bool hasBrowser = true;
    bool hasApplications = true;
    std::string folderApplication = "fake.desktop";
    std::string fileApplication = "editor.desktop";
    /// Any thread may ask this.
    std::function<std::vector<std::string>(const std::string &path)> iconNamesOf;

    bool open(const std::string &path) override
    {
        opened.push_back(path);
        return hasApplications;
    }
    bool openLink(const std::string &address) override
    {
        openedLinks.push_back(address);
        return hasBrowser;
    }
    std::string applicationToOpen(const std::string &path) const override
    {
        return isFolder(path) ? folderApplication : fileApplication;
    }
    std::vector<std::string> iconNames(const std::string &path) const override
    {
        return iconNamesOf ? iconNamesOf(path) : std::vector<std::string>();
    }
    bool isFolder(const std::string &path) const override { return !files.contains(path); }
    std::string resolvingSymlinks(const std::string &path) const override
    {
        const auto link = links.find(path);
        return link == links.end() ? path : link->second;
    }
};

} // namespace quillon
