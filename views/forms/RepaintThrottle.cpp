#include "views/forms/RepaintThrottle.h"

#include <QTimer>
#include <algorithm>
#include <utility>

namespace tallyhorn {
namespace {

/// In milliseconds.  Users do not notice shorter delays.
constexpr int ShortestInterval = 40;
/// Bounds the share of the thread's time that repaints take to a ninth.
constexpr int IntervalPerCost = 8;

}  // namespace

RepaintThrottle::RepaintThrottle(QObject* owner, std::function<void()> repaint)
    : repaint_(std::move(repaint)), timer_(new QTimer(owner)), interval_(ShortestInterval) {
    timer_->setObjectName(QStringLiteral("repaintThrottle"));
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    // The timer is destroyed after this object, a member of the owner.  The context object `owner` ends the
    // calls when it is destroyed.
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
