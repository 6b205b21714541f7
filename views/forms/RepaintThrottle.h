#pragma once

#include <QElapsedTimer>
#include <functional>

class QObject;
class QTimer;

namespace tallyhorn {

/// Limits how often a view shows what arrived.  A request runs the repaint at once if the last one was long
/// enough ago; otherwise one timer runs it later for all requests made until then.  The interval is 40 ms, or
/// eight times what the last repaint took if that is longer.
class RepaintThrottle {
public:
    /// `owner` is the object that has the throttle as a member: the timer becomes its child.
    RepaintThrottle(QObject* owner, std::function<void()> repaint);

    RepaintThrottle(const RepaintThrottle&) = delete;
    RepaintThrottle& operator=(const RepaintThrottle&) = delete;

    void Request();
    /// Runs a repaint that is still waiting for its time, if there is one.
    void Flush();

private:
    void Run();

    const std::function<void()> repaint_;
    QTimer* const timer_;
    QElapsedTimer sinceRepaint_;
    int interval_;  ///< milliseconds from the end of one repaint to the start of the next
};

}  // namespace tallyhorn
