#pragma once

#include <QElapsedTimer>
#include <functional>

class QObject;
class QTimer;

namespace tallyhorn {

/// Limits how often a view is repainted because of arrivals.  A request runs the repaint at once if enough
/// time has passed since the previous repaint; otherwise a timer runs it later, once for all requests until
/// then.  The interval is 40 ms, or eight times the duration of the previous repaint if that is longer.
class RepaintThrottle {
public:
    /// `owner` is the object that has the throttle as a member: the timer becomes its child.
    RepaintThrottle(QObject* owner, std::function<void()> repaint);

    RepaintThrottle(const RepaintThrottle&) = delete;
    RepaintThrottle& operator=(const RepaintThrottle&) = delete;

    void Request();
    /// Runs at once the repaint for which the timer is waiting, if there is one.
    void Flush();

private:
    void Run();

    const std::function<void()> repaint_;
    QTimer* const timer_;
    QElapsedTimer sinceRepaint_;
    int interval_;  ///< milliseconds from the end of one repaint to the start of the next
};

}  // namespace tallyhorn
