#pragma once

#include <functional>

#include "platform/NotificationArea.h"

namespace tallyhorn {

/// The console's icon in the notification area: which picture it has and which comes next.
/// User-interface thread only; the timer that makes it flash is its owner's.
class NotificationIcon {
public:
    static constexpr int NormalImage = 0;
    /// `enableTimer` starts and stops the timer; it is told of changes alone, since starting a running timer
    /// anew would keep an icon from flashing for as long as notifications come fast.
    NotificationIcon(NotificationArea& area, std::function<void(bool)> enableTimer);

    void Initialize();
    void Shutdown();
    /// A flash that runs goes on as it is.
    void StartFlash();
    /// The icon keeps the picture that it showed last until it is added or changed the next time.
    void StopFlash();
    /// What the timer does, every half second.
    void TimFlashTick();

    /// The picture in the icon's record; StopFlash makes it another one than the icon shows.
    int RecordImage() const { return recordImage_; }

private:
    NotificationArea& area_;
    const std::function<void(bool)> enableTimer_;
    int recordImage_ = NormalImage;
    int nextImage_;
    bool flashing_ = false;
};

}  // namespace tallyhorn
