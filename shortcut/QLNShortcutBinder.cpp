#include "shortcut/QLNShortcutBinder.h"

#include "base/Require.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "shortcut/QLNShortcutValidator.h"

#include <cstdio>
#include <utility>

namespace quillon {

QLNHotKey::QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
                     HotKey::Receiver receiver)
    : service_(service)
{
    service_.onPressed(std::move(pressed));
    service_.grab(keys, std::move(receiver));
}

QLNHotKey::~QLNHotKey()
{
    service_.release();
    service_.onPressed(nullptr);
}

QLNShortcutBinder::QLNShortcutBinder(QLNShortcutMonitor &monitor, HotKey &service)
    : monitor_(monitor), service_(service)
{}

void QLNShortcutBinder::start()
{
    require(!isStarted_, "the shortcut is bound once");
    isStarted_ = true;
    connect(&monitor_, &QLNShortcutMonitor::changed, this, &QLNShortcutBinder::bind);
    bind();
}

void QLNShortcutBinder::pause()
{
    ++pauses_;
    hotKey_.reset();
}

void QLNShortcutBinder::resume()
{
    require(pauses_ > 0, "what goes on has been paused");
    --pauses_;
    bind();
}

void QLNShortcutBinder::bind()
{
    if (!isStarted_ || pauses_ > 0)
        return;
    hotKey_.reset();
    const auto &shortcut = monitor_.shortcut();
    if (shortcut != bound_)
        setOutcome(std::nullopt);
    bound_ = shortcut;
    if (shortcut && shortcut->keys)
        hotKey_.emplace(
            service_, *shortcut->keys, [this] { Q_EMIT pressed(); },
            [this](HotKey::Outcome outcome) { setOutcome(outcome); });
}

void QLNShortcutBinder::setOutcome(std::optional<HotKey::Outcome> outcome)
{
    if (outcome == outcome_)
        return;
    outcome_ = outcome;
    const auto fault = outcome ? QLNShortcutValidator::fault(*outcome) : std::nullopt;
    if (fault)
        std::fprintf(stderr, "quillon: %s\n",
                     qUtf8Printable(QLNShortcutValidator::words(*fault, *bound_)));
    Q_EMIT outcomeChanged();
}

} // namespace quillon
