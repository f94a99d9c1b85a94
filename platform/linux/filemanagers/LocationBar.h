#pragma once

#include "platform/linux/filemanagers/Accessibility.h"

#include <optional>
#include <string>

namespace quillon {

/// The part of a GTK file manager's window that says which folder it shows: an entry with the path,
/// or a row of buttons for the folders on the way to it. For one thread at a time.
class LocationBar
{
public:
    LocationBar(Accessibility &accessibility, Accessibility::Control frame, Deadline deadline);

    /// Returns the path shown, which is absolute but need not exist. Returns nothing when there is
    /// neither an entry nor a row of buttons.
    std::optional<std::string> folder();
    /// Writes a location, a path or a URI, into the entry and confirms it. Returns false when there
    /// is no entry.
    bool go(const std::string &location);
    bool hasEntry() { return entry().has_value(); }
    /// Makes the window show its entry, as the key Control-L does. Returns false when the window
    /// offers no way to do so.
    bool showEntry();

private:
    std::optional<Accessibility::Control> entry();
    std::optional<std::string> folderOfButtons();
    /// Returns the path that the buttons directly inside the control spell, or nothing when they
    /// spell none.
    std::optional<std::string> pathOfButtons(const Accessibility::Control &parent);

    Accessibility &accessibility_;
    const Accessibility::Control frame_;
    const Deadline deadline_;
};

} // namespace quillon
