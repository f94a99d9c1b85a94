#pragma once

#include "platform/RemoteControl.h"

#include <QObject>

namespace quillon {

/// The session bus: name org.quillon.Quillon, object /org/quillon/Quillon, interface
/// org.freedesktop.Application. The desktop's own tools (a desktop entry's actions, gapplication,
/// gdbus) reach the program the same way as a second start does.
class BusRemoteControl : public RemoteControl
{
public:
    ~BusRemoteControl() override;

    Claim claim(Handler handler) override;
    bool send(const std::string &action) override;

private:
    QObject object_;
    bool isOwner_ = false;
};

} // namespace quillon
