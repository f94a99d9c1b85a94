#pragma once

#include "platform/RunningInstance.h"
#include "platform/linux/bus/BusConnection.h"

#include <string>

namespace quillon {

/// Reaches the instance over the session bus, without Qt, since the whole process that asks lives
/// for a few milliseconds.
class BusRunningInstance : public RunningInstance
{
public:
    /// The token is the right to the keyboard that is sent along with requests. It is empty when
    /// there is none.
    explicit BusRunningInstance(std::string activationToken = {});

    bool isRunning() override;
    Outcome request(const std::string &action) override;
    RemoteAnswer find(const RemoteQuery &query) override;
    std::optional<std::string> status() override;
    Outcome use(const std::string &settings, const std::string &path) override;
    Opened open(const std::string &settings, const std::string &path) override;

private:
    std::string activationToken_;
    BusConnection bus_ = BusConnection::session();
};

} // namespace quillon
