#pragma once

#include <QLocale>
#include <QString>

#include <cstddef>

namespace quillon {

/// Returns the number as people write it in the language of the windows, such as "12,345".
inline QString countText(std::size_t number)
{
    return QLocale().toString(static_cast<qulonglong>(number));
}

} // namespace quillon
