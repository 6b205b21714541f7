#pragma once

#include <QElapsedTimer>
#include <QObject>

#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "views/forms/CommandQueue.h"

class QTimer;

namespace tallyhorn {

/// Decides when waiting datagrams are handled: at once, or, if a batch was handled just before, up to 80 ms
/// after it.  Showing a batch costs more than handling it, so a few large batches are cheaper than many small
/// ones.  The referenced objects must outlive the timer.
class ArrivalTimer final : public QObject {
    Q_OBJECT

public:
    ArrivalTimer(SyslogEndpoint& syslog, ProcessingCycle& cycle, CommandQueue& queue, QObject* parent);

    /// Starts the timer unless it is running.  When it fires, it handles waiting datagrams for about 10 ms,
    /// and starts again if datagrams are left.
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
