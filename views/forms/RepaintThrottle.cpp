#include "views/forms/RepaintThrottle.h"

#include <QTimer>
#include <algorithm>
#include <utility>

namespace tallyhorn {
namespace {

/// In milliseconds.  Users do not notice shorter delays.
constexpr int ShortestInterval = 40;
/// Limits repaints to a ninth of the thread's time.
constexpr int IntervalPerCost = 8;

}  // namespace

RepaintThrottle::RepaintThrottle(QObject* owner, std::function<void()> repaint)
    : repaint_(std::move(repaint)), timer_(new QTimer(owner)), interval_(ShortestInterval) {
    timer_->setObjectName(QStringLiteral("repaintThrottle"));
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    // The timer is destroyed after this object, which is a member of `owner`.  With `owner` as context
    // object, Qt makes no call after `owner` is destroyed.
    timer_->callOnTimeout(owner, [this] { Run(); });
}

void RepaintThrottle::Request() {
    if (timer_->isActive())
        return;
    const qint64 since = sinceRepaint_.isValid() ? sinceRepaint_.elapsed() : interval_;
    if (since >= interval_)
        Run();
    else
        timer_->start(static_cast<int>(interval_ - since));
}

void RepaintThrottle::Flush() {
    if (timer_->isActive())
        Run();
}

void RepaintThrottle::Run() {
    timer_->stop();
    QElapsedTimer cost;
    cost.start();
    repaint_();
    interval_ = std::max(ShortestInterval, static_cast<int>(cost.elapsed()) * IntervalPerCost);
    sinceRepaint_.start();
}

}  // namespace tallyhorn
