#pragma once

#include "platform/linux/filemanagers/Accessibility.h"

#include <optional>
#include <string>

namespace quillon {

/// Where a window of a GTK file manager says which folder it shows: an entry with the path, or a
/// row of buttons for the folders on the way to it. One thread at a time.
class LocationBar
{
public:
    LocationBar(Accessibility &accessibility, Accessibility::Control frame, Deadline deadline);

    /// The path shown, of which nothing is known but that it is absolute. Absent when there is
    /// neither entry nor buttons.
    std::optional<std::string> folder();
    /// Writes a location, a path or a URI, into the entry and confirms it. False without an entry.
    bool go(const std::string &location);
    bool hasEntry() { return entry().has_value(); }
    /// Has the window show its entry, as the key Control-L does. False when it cannot be asked.
    bool showEntry();

private:
    std::optional<Accessibility::Control> entry();
    std::optional<std::string> folderOfButtons();
    /// The path that the buttons directly inside the control spell; absent when they spell none.
    std::optional<std::string> pathOfButtons(const Accessibility::Control &parent);

    Accessibility &accessibility_;
    const Accessibility::Control frame_;
    const Deadline deadline_;
};

} // namespace quillon
