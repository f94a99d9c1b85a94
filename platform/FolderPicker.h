#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// The desktop's own dialog in which the user chooses folders. Main thread only.
class FolderPicker
{
public:
    FolderPicker() = default;
    virtual ~FolderPicker() = default;
    FolderPicker(const FolderPicker &) = delete;
    FolderPicker &operator=(const FolderPicker &) = delete;

    /// Receives the absolute paths of the chosen folders, or no path when the user cancelled.
    /// Receives nothing when the desktop has no dialog that can choose several folders.
    using Receiver = std::function<void(const std::optional<std::vector<std::string>> &paths)>;

    /// Shows the dialog over the window, at first in the folder, and returns at once. The receiver
    /// is called later and once. An earlier dialog that is still open is closed, and its receiver
    /// is not called.
    virtual void pick(const std::string &title, const std::string &folder, std::uintptr_t window,
                      Receiver receiver) = 0;
};

} // namespace quillon
