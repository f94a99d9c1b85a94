#pragma once

#include "app/widgets/NoticeWindow.h"

#include <string>

namespace quillon {

class WindowSystem;
class Workspace;

/// Takes the user to the address that takes feedback, where the build was given one. Sends nothing.
/// Main thread only.
class Feedback
{
public:
    struct Services
    {
        Workspace &workspace;
        WindowSystem &windowSystem;
    };

    /// The services outlive this. The address is empty where nobody takes feedback.
    Feedback(const Services &services, std::string address);

    bool isTaken() const { return !address_.empty(); }
    /// Opens the address in the web browser; a window names it when there is none.
    void open();

    bool isWindowVisible() const { return window_.isVisible(); }

private:
    Services services_;
    std::string address_;
    NoticeWindow window_;
};

} // namespace quillon
