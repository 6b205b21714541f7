#pragma once

#include <functional>

#include "platform/NotificationArea.h"

namespace tallyhorn {

/// Decides which picture the console's icon in the notification area shows.  The owner of this object has the
/// timer that makes the icon flash.
class NotificationIcon {
public:
    /// `enableTimer` starts and stops the timer.  It is called only on changes: to restart a running timer at
    /// each notification would keep the icon from flashing for as long as notifications arrive faster than
    /// the timer's interval.
    NotificationIcon(NotificationArea& area, std::function<void(bool)> enableTimer);

    void Initialize();
    void Shutdown();
    /// Starts the flash; does not change one that is running.
    void StartFlash();
    /// Stops the flash.  The icon keeps the picture that it shows until it is added again or flashes again.
    void StopFlash();
    /// To be called by the timer, every half second.
    void TimFlashTick();

private:
    NotificationArea& area_;
    const std::function<void(bool)> enableTimer_;
    int nextImage_;
    bool flashing_ = false;
};

}  // namespace tallyhorn
