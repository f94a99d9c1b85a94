#include "prefs/KeptFolders.h"

#include "base/DefaultsStore.h"
#include "base/PathText.h"
#include "prefs/PreferenceKeys.h"

#include <algorithm>
#include <utility>

namespace quillon {

std::vector<std::string> KeptFolders::paths() const
{
    std::vector<std::string> paths;
    for (const std::string &text : stored()) {
        const std::string_view path = withoutTrailingSlashes(text);
        if (path.starts_with('/') && std::ranges::find(paths, path) == paths.end())
            paths.emplace_back(path);
    }
    return paths;
}

bool KeptFolders::contains(std::string_view path) const
{
    const std::vector<std::string> kept = paths();
    return std::ranges::find(kept, withoutTrailingSlashes(path)) != kept.end();
}

bool KeptFolders::keep(std::string_view path)
{
    if (contains(path))
        return true;
    std::vector<std::string> texts = stored();
    texts.emplace_back(withoutTrailingSlashes(path));
    return store(texts);
}

bool KeptFolders::release(std::string_view path)
{
    // A path that was written by hand may end with a slash.
    std::vector<std::string> texts = stored();
    const auto removed = std::erase_if(texts, [path](const std::string &text) {
        return withoutTrailingSlashes(text) == withoutTrailingSlashes(path);
    });
    return removed == 0 || store(texts);
}

bool KeptFolders::releaseAll()
{
    return store_.remove(PreferenceKeys::KEPT_ON_TOP);
}

std::vector<std::string> KeptFolders::stored() const
{
    return store_.stringArray(PreferenceKeys::KEPT_ON_TOP).value_or(std::vector<std::string>());
}

bool KeptFolders::store(const std::vector<std::string> &texts)
{
    DefaultsArray array;
    for (const std::string &text : texts)
        array.push_back({text});
    return store_.set(PreferenceKeys::KEPT_ON_TOP, {std::move(array)});
}

} // namespace quillon
