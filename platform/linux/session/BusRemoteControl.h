#pragma once

#include "platform/RemoteControl.h"

#include <QObject>

namespace quillon {

class TaskQueue;

/// Answers on the session bus under the name org.quillon.Quillon. The object /org/quillon/Quillon
/// has the interface org.freedesktop.Application, so that the desktop's own tools (a desktop
/// entry's actions, gapplication, gdbus) reach the program as a second start does, the interface
/// org.quillon.Quillon.Search, and those of SearchProviders.h.
class BusRemoteControl : public RemoteControl
{
public:
    /// Searches run on the background queue, which outlives them.
    explicit BusRemoteControl(TaskQueue &background) : background_(background) {}
    ~BusRemoteControl() override;

    Claim claim(Handlers handlers) override;

private:
    TaskQueue &background_;
    QObject object_;
    bool isOwner_ = false;
};

} // namespace quillon
