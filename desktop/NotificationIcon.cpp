#include "desktop/NotificationIcon.h"

#include <utility>

namespace tallyhorn {
namespace {

constexpr std::string_view Tip = "Tallyhorn Listener Console";
constexpr int FirstFlashImage = 2;
constexpr int OtherFlashImage = 1;

}  // namespace

NotificationIcon::NotificationIcon(NotificationArea& area, std::function<void(bool)> enableTimer)
    : area_(area), enableTimer_(std::move(enableTimer)), nextImage_(FirstFlashImage) {}

void NotificationIcon::Initialize() {
    recordImage_ = NormalImage;
    area_.Add(recordImage_, Tip);
    nextImage_ = FirstFlashImage;
}

void NotificationIcon::Shutdown() {
    area_.Delete();
}

void NotificationIcon::StartFlash() {
    if (!std::exchange(flashing_, true))
        enableTimer_(true);
}

void NotificationIcon::StopFlash() {
    nextImage_ = FirstFlashImage;
    if (std::exchange(flashing_, false))
        enableTimer_(false);
    recordImage_ = OtherFlashImage;
}

void NotificationIcon::TimFlashTick() {
    recordImage_ = nextImage_;
    nextImage_ = nextImage_ == OtherFlashImage ? FirstFlashImage : OtherFlashImage;
    area_.Modify(recordImage_, Tip);
}

}  // namespace tallyhorn
