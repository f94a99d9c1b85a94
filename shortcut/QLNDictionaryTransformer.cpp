#include "shortcut/QLNDictionaryTransformer.h"

#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr std::string_view KEY_FIELD = "key";
constexpr std::string_view MODIFIERS_FIELD = "modifiers";

std::optional<QLNShortcut> fromDictionary(const DefaultsDictionary &stored)
{
    KeyCombination keys;
    const auto key = stored.find(KEY_FIELD);
    const auto *name = key == stored.end() ? nullptr : std::get_if<std::string>(&key->second.value);
    if (!name || name->empty())
        return std::nullopt;
    keys.key = keyFromText(*name);

    const auto held = stored.find(MODIFIERS_FIELD);
    if (held == stored.end())
        return QLNShortcut{.keys = keys};
    const auto *modifiers = std::get_if<DefaultsArray>(&held->second.value);
    if (!modifiers)
        return std::nullopt;
    for (const DefaultsValue &element : *modifiers) {
        const auto *text = std::get_if<std::string>(&element.value);
        const auto *modifier = text ? ShortcutModifier::named(*text) : nullptr;
        if (!modifier)
            return std::nullopt;
        keys.*modifier->isHeld = true;
    }
    return QLNShortcut{.keys = keys};
}

} // namespace

DefaultsValue QLNDictionaryTransformer::storedForm(const QLNShortcut &shortcut)
{
    if (!shortcut.keys)
        return {shortcut.text()};
    DefaultsArray modifiers;
    for (const ShortcutModifier *m = ShortcutModifier::begin(); m != ShortcutModifier::end(); ++m)
        if ((*shortcut.keys).*m->isHeld)
            modifiers.push_back({std::string(m->name)});
    DefaultsDictionary stored;
    stored.emplace(KEY_FIELD, DefaultsValue{shortcut.keys->key});
    stored.emplace(MODIFIERS_FIELD, DefaultsValue{std::move(modifiers)});
    return {std::move(stored)};
}

std::optional<QLNShortcut> QLNDictionaryTransformer::shortcut(const DefaultsValue &stored)
{
    if (const auto *text = std::get_if<std::string>(&stored.value))
        return QLNShortcut::fromText(*text);
    if (const auto *dictionary = std::get_if<DefaultsDictionary>(&stored.value))
        return fromDictionary(*dictionary);
    return std::nullopt;
}

} // namespace quillon
