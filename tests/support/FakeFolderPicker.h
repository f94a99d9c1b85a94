#pragma once

#include "platform/FolderPicker.h"

#include <utility>

namespace quillon {

/// A desktop whose dialog the test answers.
class FakeFolderPicker : public FolderPicker
{
public:
    void pick(const std::string &, const std::string &folder, std::uintptr_t,
              Receiver receiver) override
    {
        startFolder = folder;
        receiver_ = std::move(receiver);
    }

    /// Answers the last question. Nothing means that there is no such dialog.
    void answer(const std::optional<std::vector<std::string>> &paths)
    {
        if (const Receiver receiver = std::exchange(receiver_, nullptr))
            receiver(paths);
    }

    std::string startFolder;

private:
    Receiver receiver_;
};

} // namespace quillon
