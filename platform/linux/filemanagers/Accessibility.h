#pragma once

#include "platform/linux/bus/BusConnection.h"
#include "platform/linux/windows/X11Windows.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// Finds the controls inside other programs' windows as screen readers do. Without an accessibility
/// bus there are none. Safe from every thread.
class Accessibility
{
public:
    /// One control of a program.
    struct Control
    {
        std::string service;
        std::string path;
    };
    /// The numbers are those of AtspiRole in at-spi2-core's atspi-constants.h.
    enum class Role : std::uint32_t
    {
        layeredPane = 30,
        list = 31,
        menuBar = 34,
        menuItem = 35,
        pageTabList = 38,
        statusBar = 54,
        table = 55,
        text = 61,
        toggleButton = 62,
        tree = 65,
        treeTable = 66,
        entry = 79,
    };

    explicit Accessibility(BusConnection &session);

    /// Returns the control that is the whole window.
    std::optional<Control> frame(const DesktopWindow &window, const X11Windows &windows,
                                 Deadline deadline);

    std::vector<Control> children(const Control &control, Deadline deadline);
    std::string name(const Control &control, Deadline deadline);
    Role role(const Control &control, Deadline deadline);
    /// Returns whether a toggle button is pressed.
    bool isChecked(const Control &control, Deadline deadline);
    /// Returns the text of an entry, or nothing for a control that cannot be edited.
    std::optional<std::string> text(const Control &control, Deadline deadline);
    bool setText(const Control &control, const std::string &text, Deadline deadline);
    /// Returns the name of a control's first action, such as "activate"; empty when it has none.
    std::string action(const Control &control, Deadline deadline);
    /// Returns the keys for its first action, such as "l;<Alt>v:l;<Primary>l".
    std::string keyBinding(const Control &control, Deadline deadline);
    bool act(const Control &control, Deadline deadline);

    using Visitor = std::function<bool(const Control &, Role)>;
    enum class Menus
    {
        leftOut,
        searched
    };
    /// Visits the controls inside another one, depth first, and returns the first for which the
    /// visitor returns true. The items of lists, tables and trees are left out.
    std::optional<Control> find(const Control &root, const Visitor &visitor, Deadline deadline,
                                Menus menus = Menus::leftOut);

private:
    VariantRef call(const Control &control, const std::string &interface, const std::string &method,
                    GVariant *arguments, Deadline deadline);
    std::optional<Control> program(pid_t process, Deadline deadline);

    BusConnection bus_;
};

} // namespace quillon
