#include "shortcut/QLNShortcutValidator.h"

#include <algorithm>

namespace quillon {

namespace {

/// Returns true for "F1" to "F35" and for the keys that start programs or set the volume, which
/// type nothing.
bool isFunctionKey(const std::string &key)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const bool isNumbered = key.size() > 1 && (key[0] == 'F' || key[0] == 'f') &&
                            std::all_of(key.begin() + 1, key.end(), isDigit);
    return isNumbered || key.starts_with("XF86");
}

} // namespace

std::optional<QLNShortcutValidator::Fault>
QLNShortcutValidator::fault(const KeyCombination &keys) const
{
    if (!keys.control && !keys.alt && !keys.super && !isFunctionKey(keys.key))
        return Fault::needsModifier;
    if (!service_.isPossible())
        return Fault::impossible;
    if (!service_.isSilent())
        return std::nullopt;
    // A service that does not ask the user reports the outcome at once.
    auto outcome = HotKey::Outcome::impossible;
    service_.grab(keys, [&outcome](HotKey::Outcome reported) { outcome = reported; });
    service_.release();
    return fault(outcome);
}

std::optional<QLNShortcutValidator::Fault> QLNShortcutValidator::fault(HotKey::Outcome outcome)
{
    switch (outcome) {
    case HotKey::Outcome::grabbed:
        return std::nullopt;
    case HotKey::Outcome::inUse:
        return Fault::inUse;
    case HotKey::Outcome::noSuchKey:
        return Fault::noSuchKey;
    case HotKey::Outcome::refused:
        return Fault::refused;
    case HotKey::Outcome::impossible:
        break;
    }
    return Fault::impossible;
}

QString QLNShortcutValidator::words(Fault fault, const QLNShortcut &shortcut)
{
    const QString keys = shortcut.keyNames().join(u'+');
    switch (fault) {
    case Fault::needsModifier:
        return tr("%1 needs Ctrl, Alt or Super with it, or a function key.").arg(keys);
    case Fault::inUse:
        return tr("%1 is in use by another program.").arg(keys);
    case Fault::noSuchKey:
        return tr("No key of this keyboard is %1.").arg(keys);
    case Fault::refused:
        return tr("The desktop did not give %1 to Quillon.").arg(keys);
    case Fault::impossible:
        break;
    }
    return tr("Programs cannot take keys in this session. Bind a key to "
              "“quillon --toggle” in the desktop’s keyboard settings.");
}

} // namespace quillon
