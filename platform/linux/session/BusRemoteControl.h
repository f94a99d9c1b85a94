#pragma once

#include "platform/RemoteControl.h"

#include <QObject>

namespace quillon {

class TaskQueue;

/// The session bus: name org.quillon.Quillon, object /org/quillon/Quillon, interface
/// org.freedesktop.Application, so that the desktop's own tools (a desktop entry's actions,
/// gapplication, gdbus) reach the program the same way as a second start does; beside it
/// org.quillon.Quillon.Search.
class BusRemoteControl : public RemoteControl
{
public:
    /// Searches run on the background queue, which outlives what is asked of it.
    explicit BusRemoteControl(TaskQueue &background) : background_(background) {}
    ~BusRemoteControl() override;

    Claim claim(Handlers handlers) override;

private:
    TaskQueue &background_;
    QObject object_;
    bool isOwner_ = false;
};

} // namespace quillon
