#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "views/forms/CommandQueue.h"

class QTimer;

namespace tallyhorn {

/// Decides when waiting datagrams are handled: at once, or up to 80 ms after the previous batch, because
/// showing a batch costs more than handling it.  The referenced objects must outlive the timer.
class ArrivalTimer final : public QObject {
    Q_OBJECT

public:
    ArrivalTimer(SyslogEndpoint& syslog, ProcessingCycle& cycle, CommandQueue& queue, QObject* parent);

    /// Starts the timer unless it is running.  Its tick handles all datagrams that are waiting at that time.
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
