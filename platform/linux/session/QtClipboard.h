#pragma once

#include "platform/Clipboard.h"

namespace quillon {

/// The clipboard as the toolkit reaches it.
class QtClipboard : public Clipboard
{
public:
    void setString(const std::string &text) override;
};

} // namespace quillon
