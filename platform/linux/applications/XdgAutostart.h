#pragma once

#include "platform/Autostart.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

/// Makes and removes the user's desktop entry "org.quillon.Quillon.desktop" among those that the
/// desktop starts at login. The user's entry hides entries of the system with that name.
class XdgAutostart final : public Autostart
{
public:
    /// Starts the command "quillon" that this program was started by, in this desktop's folders.
    XdgAutostart();
    /// Starts the program at the absolute path with "--background". The folders for such entries
    /// are absolute, and the user's own folder comes first.
    XdgAutostart(std::string program, std::vector<std::string> folders);

    bool isEnabled() const override;
    bool setEnabled(bool enabled) override;

private:
    /// Returns whether the desktop would start the first entry found in the folders from this one
    /// on.
    bool startsFrom(std::size_t first) const;
    bool write() const;
    /// Writes an entry that keeps the system's entries from being started.
    bool writeHidden() const;
    bool remove() const;

    std::string program_;
    std::vector<std::string> folders_;
};

} // namespace quillon
