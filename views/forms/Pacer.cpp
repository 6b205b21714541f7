#include "views/forms/Pacer.h"

#include <QTimer>
#include <algorithm>
#include <utility>

namespace tallyhorn {
namespace {

/// What an eye still takes for at once.
constexpr int ShortestInterval = 40;
/// How much longer than the work itself the time to the next one is, at least.
constexpr int TimesItsCost = 8;

}  // namespace

Pacer::Pacer(QObject* owner, std::function<void()> work)
    : work_(std::move(work)), timer_(new QTimer(owner)), interval_(ShortestInterval) {
    timer_->setObjectName(QStringLiteral("pacer"));
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    // Gone with the owner at the latest, when the pacer is gone already.
    timer_->callOnTimeout(owner, [this] { Work(); });
}

void Pacer::Request() {
    if (timer_->isActive())
        return;
    const qint64 since = sinceWork_.isValid() ? sinceWork_.elapsed() : interval_;
    if (since >= interval_)
        Work();
    else
        timer_->start(static_cast<int>(interval_ - since));
}

void Pacer::Flush() {
    if (timer_->isActive())
        Work();
}

void Pacer::Work() {
    timer_->stop();
    QElapsedTimer cost;
    cost.start();
    work_();
    interval_ = std::max(ShortestInterval, static_cast<int>(cost.elapsed()) * TimesItsCost);
    sinceWork_.start();
}

}  // namespace tallyhorn
