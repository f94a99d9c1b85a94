#pragma once

#include "platform/Clipboard.h"

namespace quillon {

/// Writes to the clipboard through the toolkit.
class QtClipboard : public Clipboard
{
public:
    void setString(const std::string &text) override;
};

} // namespace quillon
