#include "app/DesktopSearch.h"

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/panel/ActionHints.h"
#include "app/panel/PanelSource.h"
#include "base/TaskQueue.h"
#include "base/TextFolding.h"
#include "prefs/Preferences.h"
#include "results/RowText.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// A build that takes longer leaves searches with what it has found so far.
constexpr auto INDEX_PATIENCE = 3s;

/// An action that is offered for every row, whatever keys the user has bound.
struct OfferedAction
{
    const char *id;
    const ActionType &type;
    const char *icon;

    ActionModel model() const { return {{}, type, ActionTarget::selectedRow}; }
};

std::vector<OfferedAction> offeredActions()
{
    return {{"show-parent", ActionType::showParentInFinder, "document-open-folder"},
            {"copy-path", ActionType::copyPathToClipboard, "edit-copy"}};
}

SearchBaseResultRef resultFor(const std::string &path)
{
    return std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>(),
                                              SearchBaseResultType::standard);
}

} // namespace

DesktopSearch::DesktopSearch(const Services &services, std::string homeFolder)
    : services_(services), homeFolder_(std::move(homeFolder))
{
    services_.builder.addObserver(*this);
}

DesktopSearch::~DesktopSearch()
{
    services_.builder.removeObserver(*this);
}

void DesktopSearch::search(const std::string &text, Receive receive)
{
    if (services_.preferences.hideFromDesktopSearch.value() ||
        QString::fromStdString(text).toUcs4().size() < PanelSource::SHORTEST_QUERY)
        return receive({});
    auto answer = [this, text, receive = std::move(receive)] {
        services_.background.post([this, text, receive] { receive(rows(text)); });
    };
    const SearchBaseBuilder &builder = services_.builder;
    const auto patience =
        std::chrono::ceil<std::chrono::milliseconds>(INDEX_PATIENCE - builder.elapsed());
    if (!builder.isBuilding() || builder.isComparing() || patience <= 0ms)
        return answer();
    waiting_.push_back(std::move(answer));
    services_.main.postDelayed(patience, [this] { answerWaiting(); });
}

void DesktopSearch::answerWaiting()
{
    for (const auto &answer : std::exchange(waiting_, {}))
        answer();
}

std::vector<RemoteControl::Row> DesktopSearch::rows(const std::string &text) const
{
    PanelSource::Answer answer = services_.source.search(text);
    // What plain Return in the panel would open comes first.
    const auto selected = answer.results.begin() + answer.selectedRow;
    if (selected != answer.results.begin())
        std::rotate(answer.results.begin(), selected, selected + 1);
    const std::vector<std::string> words = foldedWords(text);
    std::vector<RemoteControl::Row> rows;
    for (const SearchBaseResultRef &result : answer.results) {
        if (result->type() != SearchBaseResultType::standard || !result->awayFolder().empty())
            continue;
        rows.push_back(describe(result->path()));
        rows.back().isNamed = foldedWords(rows.back().name) == words;
    }
    return rows;
}

RemoteControl::Row DesktopSearch::describe(const std::string &path) const
{
    const RowText row = rowText(*resultFor(path), homeFolder_);
    QString name = row.text.mid(row.nameStart);
    if (name.size() > 1 && name.endsWith(u'/'))
        name.chop(1);
    QString place = row.text.left(row.nameStart);
    if (place.size() > 1)
        place.chop(1); // the slash
    return {.path = path, .name = name.toStdString(), .place = place.toStdString()};
}

std::vector<RemoteControl::RowAction> DesktopSearch::rowActions()
{
    std::vector<RemoteControl::RowAction> actions;
    for (const OfferedAction &offered : offeredActions())
        actions.push_back({.id = offered.id,
                           .words = actionHints({offered.model()}).front().meaning.toStdString(),
                           .icon = offered.icon});
    return actions;
}

void DesktopSearch::run(const std::string &action, const std::string &path)
{
    if (action == "open")
        return open(path, [](const std::string &) {});
    for (const OfferedAction &offered : offeredActions()) {
        if (action != offered.id)
            continue;
        const SearchBaseResultRef result = resultFor(path);
        services_.source.recordUse(result);
        services_.runner.runAction(offered.model(), result);
    }
}

void DesktopSearch::open(const std::string &path,
                         const std::function<void(const std::string &fault)> &receive)
{
    const SearchBaseResultRef result = resultFor(path);
    services_.source.recordUse(result);
    const auto model = services_.actions.actionFor({});
    if (!model)
        return receive("no action is bound to Return");
    services_.runner.runAction(*model, result,
                               [receive](const std::optional<ActionFailure> &failure) {
                                   receive(failure ? description(*failure) : "");
                               });
}

} // namespace quillon
