#pragma once

#include "app/widgets/NoticeWindow.h"

#include <optional>
#include <string>

namespace quillon {

class DefaultsStore;
class WindowSystem;
class Workspace;

/// Takes the user to where feedback goes: the address that the build was given or, without one, a
/// page made on the spot. Sends nothing. Main thread only.
class Feedback
{
public:
    struct Services
    {
        Workspace &workspace;
        DefaultsStore &defaults;
        WindowSystem &windowSystem;
    };

    /// The services outlive this. An empty address has the page made.
    Feedback(const Services &services, std::string address, std::string version);

    /// Opens the place in the web browser; a window names it when there is none.
    void open();

    bool isWindowVisible() const { return window_.isVisible(); }
    void setPanelPalette(const PanelPalette &palette) { window_.setPanelPalette(palette); }

private:
    void openPage();
    /// The path of the written page; absent when it could not be written.
    std::optional<std::string> writePage(const QString &folder, const QString &name) const;

    Services services_;
    std::string address_;
    std::string version_;
    NoticeWindow window_;
};

} // namespace quillon
