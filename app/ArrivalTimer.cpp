#include "app/ArrivalTimer.h"

#include <QTimer>
#include <algorithm>

namespace tallyhorn {
namespace {

/// The shortest time from one batch to the next, in milliseconds.  If a batch leaves datagrams unhandled, the
/// next one follows at once instead.  The time is longer in a storm, because showing the rows then takes as
/// long as all other work, and nobody can read every row.
constexpr int ArrivalInterval = 40;
constexpr int StormInterval = 80;
constexpr std::uint64_t StormSize = 1000;  ///< a batch of at least so many datagrams is a storm

}  // namespace

ArrivalTimer::ArrivalTimer(SyslogEndpoint& syslog, ProcessingCycle& cycle, CommandQueue& queue,
                           QObject* parent)
    : QObject(parent), syslog_(syslog), cycle_(cycle), queue_(queue), timArrival(new QTimer(this)) {
    timArrival->setObjectName(QStringLiteral("timArrival"));
    timArrival->setSingleShot(true);
    timArrival->setTimerType(Qt::PreciseTimer);
    connect(timArrival, &QTimer::timeout, this, &ArrivalTimer::Tick);
}

void ArrivalTimer::HandleDatagrams() {
    if (timArrival->isActive())
        return;
    const qint64 since = sinceLast_.isValid() ? sinceLast_.elapsed() : interval_;
    timArrival->start(static_cast<int>(std::clamp<qint64>(interval_ - since, 0, interval_)));
}

/// Handles one slice of datagrams.  If more are waiting, starts the timer again instead of handling them at
/// once, so that all other events run between two slices.
void ArrivalTimer::Tick() {
    auto waiting = SyslogEndpoint::Waiting::Nothing;
    const std::uint64_t before = syslog_.ReceivedCount();
    queue_.RunAsWork([&] {
        waiting = syslog_.DataArrival();
        cycle_.MissedTick();
    });
    sinceLast_.start();
    interval_ = syslog_.ReceivedCount() - before < StormSize ? ArrivalInterval : StormInterval;
    if (waiting != SyslogEndpoint::Waiting::Nothing)
        timArrival->start(waiting == SyslogEndpoint::Waiting::More ? 0 : interval_);
}

void ArrivalTimer::Stop() {
    timArrival->stop();
}

}  // namespace tallyhorn
