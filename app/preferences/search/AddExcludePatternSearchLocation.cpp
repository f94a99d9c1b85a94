#include "app/preferences/search/AddExcludePatternSearchLocation.h"

#include "app/widgets/CountText.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormPane.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "base/TaskQueue.h"
#include "indexing/SearchBaseFinder.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto SETTLING = 200ms;

} // namespace

AddExcludePatternSearchLocation::AddExcludePatternSearchLocation(const Services &services,
                                                                 const std::string &proposed,
                                                                 Added added, QWidget *over)
    : FormSheet(tr("Exclude Folders Matching Pattern"), tr("&Add"), over),
      services_(services),
      added_(std::move(added)),
      patternTextField_(new QLineEdit(&form()))
{
    patternTextField_->setMinimumWidth(metrics::fieldWidth(fontMetrics()));
    patternTextField_->setPlaceholderText(QStringLiteral("Archive/old"));
    form().addRow(tr("&Pattern:"), patternTextField_);
    note_ = form().addNote();
    settled_.setSingleShot(true);
    settled_.setInterval(SETTLING);
    connect(&settled_, &QTimer::timeout, this, &AddExcludePatternSearchLocation::findHits);
    connect(patternTextField_, &QLineEdit::textChanged, this,
            &AddExcludePatternSearchLocation::textChanged);
    connect(this, &FormSheet::confirmed, this, &AddExcludePatternSearchLocation::confirm);
    patternTextField_->setFocus();
    patternTextField_->setText(QString::fromStdString(proposed));
    textChanged();
    if (!proposed.empty())
        findHits();
}

AddExcludePatternSearchLocation::~AddExcludePatternSearchLocation()
{
    search_.request_stop();
}

std::string AddExcludePatternSearchLocation::pattern() const
{
    return patternTextField_->text().toStdString();
}

bool AddExcludePatternSearchLocation::isListed(const std::string &pattern) const
{
    const auto patterns = services_.searchBaseFinder.excludePatternsPreferences.values();
    return std::ranges::find(patterns, pattern) != patterns.end();
}

void AddExcludePatternSearchLocation::textChanged()
{
    isConfirmed_ = false;
    answer_.reset();
    search_.request_stop();
    confirmationButton().setText(tr("&Add"));
    note_->sayFault(isListed(pattern())
                        ? tr("“%1” is listed already.").arg(patternTextField_->text())
                        : QString());
    note_->setSentence(tr("A folder is left out when its path contains this text, and everything "
                          "below it, too. Capital letters match only themselves."));
    if (pattern().empty())
        settled_.stop();
    else
        settled_.start();
}

void AddExcludePatternSearchLocation::findHits()
{
    settled_.stop();
    search_ = {};
    services_.background.post([services = services_, pattern = pattern(),
                               stop = search_.get_token(), self = QPointer(this)] {
        std::vector<std::string> folders;
        for (const auto &location : services.searchBaseFinder.includeLocations())
            folders.push_back(location.url());
        Answer answer{pattern, patternHits(services.index, pattern, folders, stop)};
        services.main.post([answer = std::move(answer), stop, self]() mutable {
            if (self && !stop.stop_requested())
                self->hitsFound(std::move(answer));
        });
    });
}

void AddExcludePatternSearchLocation::hitsFound(Answer answer)
{
    answer_ = std::move(answer);
    if (!isListed(answer_->pattern))
        showHits(answer_->hits);
    if (std::exchange(isConfirmed_, false) && !answer_->hits.isEverything)
        add();
}

void AddExcludePatternSearchLocation::showHits(const PatternHits &hits)
{
    if (hits.hits == 0)
        return note_->setSentence(tr("Nothing that is indexed now would be left out."));
    QStringList examples;
    for (const std::string &path : hits.examples)
        examples << fontMetrics().elidedText(QString::fromStdString(path), Qt::ElideMiddle,
                                             note_->width() - metrics::FORM_ROW);
    const QString places = examples.join(u'\n');
    if (!hits.isEverything)
        return note_->setSentence(tr("Leaves out %1 of %2 indexed folders, among them:\n%3")
                                      .arg(countText(hits.hits), countText(hits.paths), places));
    note_->sayFault(tr("Leaves out everything that is indexed, %1 folders, among them:\n%2")
                        .arg(countText(hits.hits), places));
    confirmationButton().setText(tr("&Add Anyway"));
}

void AddExcludePatternSearchLocation::confirm()
{
    const std::string wanted = pattern();
    if (wanted.empty())
        return note_->sayFault(tr("Which text is to keep folders out?"));
    if (isListed(wanted))
        return;
    if (answer_)
        return add();
    isConfirmed_ = true;
    findHits();
}

void AddExcludePatternSearchLocation::add()
{
    if (!services_.searchBaseFinder.excludePatternsPreferences.add(pattern()))
        return note_->sayFault(writeFault());
    added_(pattern());
    accept();
}

} // namespace quillon
