#include "app/panel/IconSource.h"

#include "base/TaskQueue.h"
#include "platform/Workspace.h"

#include <QFileInfo>

#include <algorithm>

namespace quillon {

namespace {

/// This is more than the rows of many queries. Beyond it, all icons are forgotten and learned anew.
constexpr qsizetype MOST_ICONS = 4000;

/// Returns the icon of the first of the names that the icon theme has.
QIcon themedIcon(const std::vector<std::string> &names)
{
    for (const std::string &name : names) {
        const QString themeName = QString::fromStdString(name);
        if (QIcon::hasThemeIcon(themeName))
            return QIcon::fromTheme(themeName);
    }
    return {};
}

QIcon folderIcon()
{
    return QIcon::fromTheme(QStringLiteral("folder"),
                            QIcon(QStringLiteral(":/quillon/folder.svg")));
}

bool isInstalled(const QString &theme)
{
    return std::ranges::any_of(QIcon::themeSearchPaths(), [&theme](const QString &directory) {
        return QFileInfo::exists(directory + u'/' + theme + QStringLiteral("/index.theme"));
    });
}

/// Chooses an installed icon theme where the desktop, without a Qt integration, names none. The
/// toolkit's own substitute has no folders. It is called before the first icon is asked for.
void chooseTheme()
{
    const QString chosen = QIcon::themeName();
    if (!chosen.isEmpty() && chosen != QStringLiteral("hicolor") && isInstalled(chosen))
        return;
    for (const auto *theme : {"breeze", "Papirus", "Adwaita"}) {
        if (isInstalled(QLatin1String(theme))) {
            QIcon::setThemeName(QLatin1String(theme));
            return;
        }
    }
}

} // namespace

IconSource::IconSource(Workspace &workspace, TaskQueue &background, TaskQueue &main)
    : workspace_(workspace), background_(background), main_(main)
{
    chooseTheme();
    folder_ = folderIcon();
}

QIcon IconSource::icon(const std::string &path)
{
    const auto key = QByteArray::fromStdString(path);
    const auto known = icons_.constFind(key);
    if (known != icons_.constEnd())
        return *known;
    if (!asked_.contains(key)) {
        asked_.insert(key);
        learn(path);
    }
    return folder_;
}

void IconSource::learn(const std::string &path)
{
    background_.post([this, path] {
        main_.post([this, path, names = workspace_.iconNames(path)] {
            const QIcon themed = themedIcon(names);
            if (icons_.size() >= MOST_ICONS)
                icons_.clear();
            const auto key = QByteArray::fromStdString(path);
            asked_.remove(key);
            icons_.insert(key, themed.isNull() ? folder_ : themed);
            Q_EMIT iconsChanged();
        });
    });
}

void IconSource::clear()
{
    icons_.clear();
    folder_ = folderIcon();
}

} // namespace quillon
