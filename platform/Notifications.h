#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillon {

/// Tells the user something without a window of the program. Main thread only.
class Notifications
{
public:
    /// An action that the notification offers.
    struct Choice
    {
        /// The text of the button, in UTF-8.
        std::string text;
        /// Runs on the main thread when the user presses the button.
        std::function<void()> chosen;
    };
    /// Plain texts in UTF-8.
    struct Notification
    {
        std::string title;
        std::string text;
        /// Desktops without buttons in notifications leave the choice out.
        std::optional<Choice> choice = {};
    };

    Notifications() = default;
    virtual ~Notifications() = default;
    Notifications(const Notifications &) = delete;
    Notifications &operator=(const Notifications &) = delete;

    /// Shows the notification and returns at once. Where the desktop shows none, "unavailable" is
    /// called later on the main thread, unless this object is gone by then.
    virtual void show(const Notification &notification, std::function<void()> unavailable) = 0;
};

} // namespace quillon
