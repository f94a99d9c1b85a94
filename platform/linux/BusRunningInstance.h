#pragma once

#include "platform/RunningInstance.h"
#include "platform/linux/BusConnection.h"

namespace quillon {

/// Reached over the session bus, without Qt: the whole process that asks lives for a few
/// milliseconds.
class BusRunningInstance : public RunningInstance
{
public:
    bool isRunning() override;
    Outcome request(const std::string &action) override;
    RemoteAnswer find(const RemoteQuery &query) override;

private:
    BusConnection bus_ = BusConnection::session();
};

} // namespace quillon
