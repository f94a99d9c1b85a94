#pragma once

#include "platform/Autostart.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

/// A desktop entry "org.quillon.Quillon.desktop" among those that the desktop starts at login. An
/// entry of the user's hides those of the system; it is made and removed here.
class XdgAutostart final : public Autostart
{
public:
    /// For the command "quillon" that this program came from, in the folders of this desktop.
    XdgAutostart();
    /// The program is an absolute path and is started with "--background". The folders for such
    /// entries are absolute, the user's own goes first.
    XdgAutostart(std::string program, std::vector<std::string> folders);

    bool isEnabled() const override;
    bool setEnabled(bool enabled) override;

private:
    /// Whether the first entry in the folders from this one on is started.
    bool startsFrom(std::size_t first) const;
    bool write() const;
    /// An entry that keeps those of the system from being started.
    bool writeHidden() const;
    bool remove() const;

    std::string program_;
    std::vector<std::string> folders_;
};

} // namespace quillon
