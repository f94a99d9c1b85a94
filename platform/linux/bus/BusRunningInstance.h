#pragma once

#include "platform/RunningInstance.h"
#include "platform/linux/bus/BusConnection.h"

#include <string>

namespace quillon {

/// Reached over the session bus, without Qt: the whole process that asks lives for a few
/// milliseconds.
class BusRunningInstance : public RunningInstance
{
public:
    /// The right to the keyboard that goes along with requests; empty when there is none.
    explicit BusRunningInstance(std::string activationToken = {});

    bool isRunning() override;
    Outcome request(const std::string &action) override;
    RemoteAnswer find(const RemoteQuery &query) override;

private:
    std::string activationToken_;
    BusConnection bus_ = BusConnection::session();
};

} // namespace quillon
