#include "views/forms/ArrivalTimer.h"

#include <QTimer>
#include <algorithm>

namespace tallyhorn {
namespace {

/// Between one handling of datagrams and the next, in milliseconds, unless more wait than one can handle.  In
/// a storm nobody reads every line, and showing them takes as long as all else.
constexpr int ArrivalInterval = 40;
constexpr int StormInterval = 80;
constexpr std::uint64_t StormSize = 1000;  ///< datagrams handled at a time

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

/// By a timer even where more wait already: between one slice and the next all other events have their turn.
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
