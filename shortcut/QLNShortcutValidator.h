#pragma once

#include "shortcut/QLNShortcut.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <optional>

namespace quillon {

/// Decides whether a key combination can be the global shortcut. Main thread only.
class QLNShortcutValidator
{
    Q_DECLARE_TR_FUNCTIONS(quillon::QLNShortcutValidator)

public:
    enum class Fault
    {
        /// The key types something when it is pressed alone or with Shift.
        needsModifier,
        inUse,
        noSuchKey,
        refused,
        impossible,
    };

    /// The service outlives this object.
    explicit QLNShortcutValidator(HotKey &service) : service_(service) {}

    /// Returns what is wrong, or nothing when the combination is fine. Tries the combination if
    /// that asks the user nothing, so no other one may be grabbed meanwhile.
    std::optional<Fault> fault(const KeyCombination &keys) const;

    /// Returns nothing for a key that is grabbed.
    static std::optional<Fault> fault(HotKey::Outcome outcome);
    /// Returns one sentence for the user, in the user's language.
    static QString words(Fault fault, const QLNShortcut &shortcut);

private:
    HotKey &service_;
};

} // namespace quillon
