#pragma once

#include <functional>

#include "platform/NotificationArea.h"

namespace tallyhorn {

/// Decides which picture the console's icon in the notification area shows.  The owner of this object has the
/// timer that makes the icon flash.
class NotificationIcon {
public:
    /// `enableTimer` starts and stops the timer.  It is called only on changes: if each notification
    /// restarted the timer, the icon would not flash while notifications arrive faster than the timer's
    /// interval.
    NotificationIcon(NotificationArea& area, std::function<void(bool)> enableTimer);

    void Initialize();
    void Shutdown();
    /// Makes the icon flash.  Does nothing if it already flashes.
    void StartFlash();
    /// Stops the flashing.  The icon keeps its current picture until Initialize is called or it flashes
    /// again.
    void StopFlash();
    /// Shows the next picture of the flashing icon.  To be called by the timer, every half second.
    void TimFlashTick();

private:
    NotificationArea& area_;
    const std::function<void(bool)> enableTimer_;
    int nextImage_;
    bool flashing_ = false;
};

}  // namespace tallyhorn
