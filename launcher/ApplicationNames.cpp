#include "launcher/ApplicationNames.h"

#include "base/EditDistance.h"

#include <QString>

#include <algorithm>
#include <array>
#include <utility>

namespace quillon {

namespace {

constexpr std::string_view DESKTOP = ".desktop";
constexpr std::size_t MOST_NAMES = 3;
/// Shorter names are part of too many words to mean anything.
constexpr qsizetype SHORTEST_PART = 3;

QString folded(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toCaseFolded();
}

std::string_view withoutSuffix(std::string_view id)
{
    if (id.ends_with(DESKTOP))
        id.remove_suffix(DESKTOP.size());
    return id;
}

/// Returns, for example, "Terminal" of "org.example.Terminal.desktop".
std::string_view lastPart(const Application &application)
{
    const std::string_view id = withoutSuffix(application.id);
    return id.substr(id.rfind('.') + 1);
}

using NameOf = std::string_view (*)(const Application &);

/// The kinds of name, the decisive ones first.
constexpr std::array<NameOf, 7> NAMES{
    [](const Application &a) -> std::string_view { return a.id; },
    [](const Application &a) { return withoutSuffix(a.id); },
    [](const Application &a) -> std::string_view { return a.name; },
    [](const Application &a) -> std::string_view { return a.untranslatedName; },
    [](const Application &a) -> std::string_view { return a.executable; },
    lastPart,
    [](const Application &a) -> std::string_view { return a.genericName; },
};

/// Returns how far the typed text is from the name. Returns nothing when more than a third of it is
/// wrong and neither text is a part of the other.
std::optional<std::size_t> distance(const QString &typed, const QString &name)
{
    if (name.isEmpty())
        return std::nullopt;
    if (name.contains(typed) || (name.size() >= SHORTEST_PART && typed.contains(name)))
        return 0;
    const std::size_t edits = editDistance(typed, name);
    if (edits > static_cast<std::size_t>(std::max(typed.size(), name.size())) / 3)
        return std::nullopt;
    return edits;
}

} // namespace

const Application *findApplication(std::string_view name, std::span<const Application> applications,
                                   NameKinds kinds)
{
    const QString wanted = folded(name);
    const std::size_t kindCount = NAMES.size() - (kinds == NameKinds::own ? 1 : 0);
    if (wanted.isEmpty())
        return nullptr;
    for (const bool isShown : {true, false}) {
        for (const NameOf nameOf : std::span(NAMES).first(kindCount)) {
            const auto found = std::ranges::find_if(applications, [&](const Application &each) {
                return each.isShown == isShown && folded(nameOf(each)) == wanted;
            });
            if (found != applications.end())
                return &*found;
        }
    }
    return nullptr;
}

std::vector<std::string> nearestNames(std::string_view name,
                                      std::span<const Application> applications)
{
    const QString typed = folded(name);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const Application &application : applications) {
        if (!application.isShown || typed.isEmpty())
            continue;
        std::optional<std::size_t> nearest;
        for (const std::string_view each :
             {std::string_view(application.name), std::string_view(application.executable)}) {
            const auto edits = distance(typed, folded(each));
            if (edits && (!nearest || *edits < *nearest))
                nearest = edits;
        }
        if (nearest)
            near.emplace_back(*nearest, application.name);
    }
    std::ranges::sort(near);
    std::vector<std::string> names;
    for (auto &[edits, each] : near)
        if (names.size() < MOST_NAMES && std::ranges::find(names, each) == names.end())
            names.push_back(std::move(each));
    return names;
}

} // namespace quillon
