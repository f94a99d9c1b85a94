#include "shortcut/QLNShortcut.h"

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <array>
#include <span>

namespace quillon {

namespace {

constexpr std::string_view BOUND_BY_DESKTOP = "desktop";

// The texts marked for translation below are shown to users.

constexpr std::array<ShortcutModifier, 4> MODIFIERS{{
    {QT_TRANSLATE_NOOP("KeyNames", "Ctrl"), &KeyCombination::control},
    {QT_TRANSLATE_NOOP("KeyNames", "Alt"), &KeyCombination::alt},
    {QT_TRANSLATE_NOOP("KeyNames", "Shift"), &KeyCombination::shift},
    {QT_TRANSLATE_NOOP("KeyNames", "Super"), &KeyCombination::super},
}};

struct OtherName
{
    std::string_view other;
    std::string_view name;
};

constexpr std::array<OtherName, 6> OTHER_MODIFIER_NAMES{{
    {"Control", "Ctrl"},
    {"Option", "Alt"},
    {"Meta", "Super"},
    {"Win", "Super"},
    {"Windows", "Super"},
    {"Logo", "Super"},
}};

/// People write the names of these symbols differently from X. The first name of a symbol is the
/// one that is shown.
constexpr std::array<OtherName, 21> KEY_NAMES{{
    {QT_TRANSLATE_NOOP("KeyNames", "Space"), "space"},
    {QT_TRANSLATE_NOOP("KeyNames", "Return"), "Return"},
    {"Enter", "Return"},
    {QT_TRANSLATE_NOOP("KeyNames", "Esc"), "Escape"},
    {"Escape", "Escape"},
    {QT_TRANSLATE_NOOP("KeyNames", "Tab"), "Tab"},
    {QT_TRANSLATE_NOOP("KeyNames", "Backspace"), "BackSpace"},
    {QT_TRANSLATE_NOOP("KeyNames", "Delete"), "Delete"},
    {"Del", "Delete"},
    {QT_TRANSLATE_NOOP("KeyNames", "Insert"), "Insert"},
    {"Ins", "Insert"},
    {QT_TRANSLATE_NOOP("KeyNames", "PageUp"), "Prior"},
    {"PgUp", "Prior"},
    {"Page_Up", "Prior"},
    {QT_TRANSLATE_NOOP("KeyNames", "PageDown"), "Next"},
    {"PgDown", "Next"},
    {"PgDn", "Next"},
    {"Page_Down", "Next"},
    {QT_TRANSLATE_NOOP("KeyNames", "Home"), "Home"},
    {QT_TRANSLATE_NOOP("KeyNames", "End"), "End"},
    {QT_TRANSLATE_NOOP("KeyNames", "Print"), "Print"},
}};

QString decoded(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool isSame(std::string_view a, std::string_view b)
{
    return decoded(a).compare(decoded(b), Qt::CaseInsensitive) == 0;
}

bool isOneCharacter(const QString &text)
{
    return text.toUcs4().size() == 1;
}

/// Returns the name by which people know a key that X names differently, or null.
const OtherName *usualName(const std::string &key)
{
    const auto *known = std::ranges::find(KEY_NAMES, std::string_view(key), &OtherName::name);
    return known == KEY_NAMES.end() ? nullptr : known;
}

/// Returns the name of any other key, which is a capital if it is a single letter.
std::string capital(const std::string &key)
{
    const QString text = QString::fromStdString(key);
    // A capital that has a different number of letters, such as that of "ß", is not used.
    const QString upper = text.toUpper();
    return isOneCharacter(text) && isOneCharacter(upper) ? upper.toStdString() : key;
}

QString translated(std::string_view name)
{
    return QCoreApplication::translate("KeyNames", std::string(name).c_str());
}

} // namespace

const ShortcutModifier *ShortcutModifier::begin()
{
    return MODIFIERS.data();
}
const ShortcutModifier *ShortcutModifier::end()
{
    return MODIFIERS.data() + MODIFIERS.size();
}

const ShortcutModifier *ShortcutModifier::named(std::string_view name)
{
    const auto *other = std::ranges::find_if(
        OTHER_MODIFIER_NAMES, [name](const OtherName &o) { return isSame(o.other, name); });
    const std::string_view usual = other == OTHER_MODIFIER_NAMES.end() ? name : other->name;
    const auto *found = std::ranges::find_if(
        MODIFIERS, [usual](const ShortcutModifier &m) { return isSame(m.name, usual); });
    return found == end() ? nullptr : found;
}

std::string keyFromText(std::string_view text)
{
    const auto *known = std::ranges::find_if(
        KEY_NAMES, [text](const OtherName &name) { return isSame(name.other, text); });
    if (known != KEY_NAMES.end())
        return std::string(known->name);
    const QString key = decoded(text);
    return (isOneCharacter(key) ? key.toLower() : key).toStdString();
}

std::optional<QLNShortcut> QLNShortcut::fromText(std::string_view text)
{
    const QString whole = decoded(text).trimmed();
    if (isSame(whole.toStdString(), BOUND_BY_DESKTOP))
        return boundByDesktop();
    // The key itself may be the plus, as in "Ctrl++".
    QStringList words = whole.chopped(whole.isEmpty() ? 0 : 1).split(u'+');
    words.back() += whole.right(1);

    KeyCombination keys;
    keys.key = keyFromText(words.takeLast().trimmed().toStdString());
    // "Ctrl+Alt+" has no key, and neither has "Ctrl+Alt", which ends with a modifier.
    if (keys.key.empty() || ShortcutModifier::named(keys.key) ||
        (keys.key.size() > 1 && keys.key.ends_with('+')))
        return std::nullopt;
    for (const QString &word : words) {
        const auto *modifier = ShortcutModifier::named(word.trimmed().toStdString());
        if (!modifier)
            return std::nullopt;
        keys.*modifier->isHeld = true;
    }
    return QLNShortcut{.keys = keys};
}

std::string QLNShortcut::text() const
{
    if (!keys)
        return std::string(BOUND_BY_DESKTOP);
    std::string text;
    for (const ShortcutModifier &modifier : MODIFIERS)
        if ((*keys).*modifier.isHeld)
            text.append(modifier.name).append("+");
    const OtherName *usual = usualName(keys->key);
    return text + (usual != nullptr ? std::string(usual->other) : capital(keys->key));
}

QStringList QLNShortcut::keyNames() const
{
    if (!keys)
        return {};
    QStringList names;
    for (const ShortcutModifier &modifier : MODIFIERS)
        if ((*keys).*modifier.isHeld)
            names << translated(modifier.name);
    const OtherName *usual = usualName(keys->key);
    return names << (usual != nullptr ? translated(usual->other)
                                      : QString::fromStdString(capital(keys->key)));
}

} // namespace quillon
