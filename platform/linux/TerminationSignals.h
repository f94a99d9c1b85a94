#pragma once

#include <QObject>

#include <functional>

namespace quillon {

/// Turns SIGTERM, SIGINT and SIGHUP into one call on the thread of the Qt loop, and has ProgramEnd
/// begin, because that thread may hang. At most one object
/// at a time; the destructor gives the signals their former meaning back.
class TerminationSignals : public QObject
{
public:
    explicit TerminationSignals(std::function<void()> onTermination);
    ~TerminationSignals() override;

private:
    int readEnd_ = -1;
};

} // namespace quillon
