#include "platform/linux/filemanagers/LocationBar.h"

#include "base/FileUri.h"
#include "base/PathText.h"

#include <utility>
#include <vector>

namespace quillon {

namespace {

using Role = Accessibility::Role;

bool isLocation(const std::string &text)
{
    return text.starts_with('/') || text.starts_with("file://");
}

} // namespace

LocationBar::LocationBar(Accessibility &accessibility, Accessibility::Control frame,
                         Deadline deadline)
    : accessibility_(accessibility), frame_(std::move(frame)), deadline_(deadline)
{}

std::optional<Accessibility::Control> LocationBar::entry()
{
    return accessibility_.find(
        frame_,
        [this](const Accessibility::Control &control, Role role) {
            return (role == Role::text || role == Role::entry) &&
                   isLocation(accessibility_.text(control, deadline_).value_or("")) &&
                   accessibility_.action(control, deadline_) == "activate";
        },
        deadline_);
}

std::optional<std::string> LocationBar::folder()
{
    const auto entry = this->entry();
    if (!entry)
        return folderOfButtons();
    const std::string text = accessibility_.text(*entry, deadline_).value_or("");
    if (!text.starts_with('/'))
        return localPath(text);
    return std::string(withoutTrailingSlashes(text));
}

std::optional<std::string> LocationBar::folderOfButtons()
{
    std::optional<std::string> path;
    accessibility_.find(
        frame_,
        [&](const Accessibility::Control &control, Role) {
            path = pathOfButtons(control);
            return path.has_value();
        },
        deadline_);
    return path;
}

std::optional<std::string> LocationBar::pathOfButtons(const Accessibility::Control &parent)
{
    // The buttons are listed from the deepest folder up. The last one is the root's and the only
    // one without a name. The button of the folder shown is pressed; those before it lead to
    // folders further down in which the user has been.
    std::string path;
    bool isOnTheWay = false;
    bool isAtRoot = false;
    for (const auto &child : accessibility_.children(parent, deadline_)) {
        if (accessibility_.role(child, deadline_) != Role::toggleButton)
            continue;
        if (isAtRoot)
            return std::nullopt;
        isOnTheWay = isOnTheWay || accessibility_.isChecked(child, deadline_);
        const std::string name = accessibility_.name(child, deadline_);
        isAtRoot = name.empty() || name == "/";
        if (isOnTheWay && !isAtRoot)
            path.insert(0, "/" + name);
    }
    if (!isAtRoot || !isOnTheWay)
        return std::nullopt;
    return path.empty() ? "/" : path;
}

bool LocationBar::go(const std::string &location)
{
    const auto entry = this->entry();
    return entry && accessibility_.setText(*entry, location, deadline_) &&
           accessibility_.act(*entry, deadline_);
}

bool LocationBar::showEntry()
{
    const auto item = accessibility_.find(
        frame_,
        [this](const Accessibility::Control &control, Role role) {
            return role == Role::menuItem &&
                   accessibility_.keyBinding(control, deadline_).ends_with("<Primary>l");
        },
        deadline_, Accessibility::Menus::searched);
    return item && accessibility_.act(*item, deadline_);
}

} // namespace quillon
