#include "app/preferences/search/IndexStatusNote.h"

#include "app/widgets/CountText.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"

#include <QDateTime>
#include <QLocale>

namespace quillon {

namespace {

constexpr int STATUS_MILLISECONDS = 1000;

QString drawnTime(std::chrono::system_clock::time_point time)
{
    const QDateTime local =
        QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time));
    const bool isToday = local.date() == QDate::currentDate();
    return isToday ? QLocale().toString(local.time(), QLocale::ShortFormat)
                   : QLocale().toString(local, QLocale::ShortFormat);
}

} // namespace

IndexStatusNote::IndexStatusNote(SearchBase &searchBase, const SearchBaseBuilder &builder,
                                 QWidget *parent)
    : FormNote({}, parent), searchBase_(searchBase), builder_(builder)
{
    refresh();
}

void IndexStatusNote::refresh()
{
    const QString now = status();
    if (now != text())
        setSentence(now);
}

QString IndexStatusNote::status() const
{
    constexpr double MEGA = 1e6;
    const std::size_t count = searchBase_.count();
    const QString folders = count == 1 ? tr("1 folder") : tr("%1 folders").arg(countText(count));
    if (builder_.isBuilding())
        return tr("Indexing: %1 so far.").arg(folders);
    QStringList parts{tr("%1 indexed").arg(folders)};
    if (const auto watched = searchBase_.watchStatus())
        parts
            << tr("%1 of %2 watched").arg(countText(watched->watched), countText(watched->folders));
    const auto bytes = static_cast<double>(searchBase_.searchBaseMatcher().bytes());
    parts << tr("%1 MB of memory").arg(QLocale().toString(bytes / MEGA, 'f', 1));
    if (const auto &build = builder_.lastBuild())
        parts << tr("built at %1 in %2 s")
                     .arg(drawnTime(build->ended), QLocale().toString(build->took.count(), 'f', 1));
    return parts.join(QStringLiteral(" · "));
}

void IndexStatusNote::timerEvent(QTimerEvent *)
{
    refresh();
}

void IndexStatusNote::showEvent(QShowEvent *event)
{
    FormNote::showEvent(event);
    refresh();
    timer_.start(STATUS_MILLISECONDS, this);
}

void IndexStatusNote::hideEvent(QHideEvent *event)
{
    timer_.stop();
    FormNote::hideEvent(event);
}

} // namespace quillon
