#pragma once

#include "platform/HotKey.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace quillon {

/// A keyboard without a desktop: keys are pressed by the test.
class FakeHotKey : public HotKey
{
public:
    void grab(const KeyCombination &keys, Receiver receiver) override
    {
        ++grabs;
        grabbed_.reset();
        receiver_ = std::move(receiver);
        if (isAnswering)
            answer(keys == taken ? Outcome::inUse : Outcome::grabbed, keys);
        else
            asked_ = keys;
    }
    void release() override
    {
        grabbed_.reset();
        receiver_ = nullptr;
    }
    void onPressed(std::function<void()> pressed) override { pressed_ = std::move(pressed); }
    bool isPossible() const override { return possible; }
    bool isSilent() const override { return isAnswering; }
    std::string keyName(std::uint32_t scanCode, std::uint32_t) const override
    {
        const auto found = keyNames.find(scanCode);
        return found == keyNames.end() ? std::string() : found->second;
    }

    /// Answers the last grab, at first or again.
    void answer(Outcome outcome) { answer(outcome, *asked_); }
    /// Returns false when the press would have no effect.
    bool press(const KeyCombination &keys)
    {
        if (grabbed_ != keys || !pressed_)
            return false;
        pressed_();
        return true;
    }
    const std::optional<KeyCombination> &grabbed() const { return grabbed_; }

    /// The combination that another program holds.
    std::optional<KeyCombination> taken;
    bool possible = true;
    /// False when a grab is not answered at once, as on a desktop that asks the user first.
    bool isAnswering = true;
    int grabs = 0;
    std::map<std::uint32_t, std::string> keyNames;

private:
    void answer(Outcome outcome, const KeyCombination &keys)
    {
        asked_ = keys;
        grabbed_ = outcome == Outcome::grabbed ? std::optional(keys) : std::nullopt;
        if (const Receiver receiver = receiver_)
            receiver(outcome);
    }

    std::optional<KeyCombination> asked_;
    std::optional<KeyCombination> grabbed_;
    Receiver receiver_;
    std::function<void()> pressed_;
};

} // namespace quillon
