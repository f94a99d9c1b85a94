#pragma once

#include "base/DefaultsStore.h"

#include <QJsonValue>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace quillon {

/// Settings are written as JSON in this form.
///
/// Each byte that is not valid UTF-8 becomes one of U+DC80 to U+DCFF, so that every byte string
/// survives writing and reading. Data is {"$data": BASE64}; a dictionary key that starts with "$"
/// is written with one more "$".
QString bytesToText(std::string_view bytes);
std::string textToBytes(const QString &text);

/// The numbers in the value are finite.
QJsonValue toJson(const DefaultsValue &value);
/// Returns nothing for null and undefined.
std::optional<DefaultsValue> fromJson(const QJsonValue &json);

} // namespace quillon
