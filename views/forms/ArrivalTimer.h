#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "views/forms/CommandQueue.h"

class QTimer;

namespace tallyhorn {

/// Decides when datagrams that have come are handled: at once, or a little after others, since showing what
/// came costs more than handling it.  User-interface thread only; what it is given outlives it.
class ArrivalTimer final : public QObject {
    Q_OBJECT

public:
    ArrivalTimer(SyslogEndpoint& syslog, ProcessingCycle& cycle, CommandQueue& queue, QObject* parent);

    /// Datagrams wait.
    void HandleDatagrams();
    void Stop();

private:
    void Tick();

    SyslogEndpoint& syslog_;
    ProcessingCycle& cycle_;
    CommandQueue& queue_;
    QElapsedTimer sinceLast_;
    int interval_ = 0;  ///< in milliseconds
    QTimer* timArrival;
};

}  // namespace tallyhorn
