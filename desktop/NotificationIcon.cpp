#include "desktop/NotificationIcon.h"

#include <utility>

namespace tallyhorn {
namespace {

constexpr std::string_view Tip = "Tallyhorn Listener Console";
constexpr int NormalImage = 0;
constexpr int FirstFlashImage = 2;
constexpr int SecondFlashImage = 1;

}  // namespace

NotificationIcon::NotificationIcon(NotificationArea& area, std::function<void(bool)> enableTimer)
    : area_(area), enableTimer_(std::move(enableTimer)), nextImage_(FirstFlashImage) {}

void NotificationIcon::Initialize() {
    area_.Add(NormalImage, Tip);
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
}

void NotificationIcon::TimFlashTick() {
    area_.Modify(nextImage_, Tip);
    nextImage_ = nextImage_ == FirstFlashImage ? SecondFlashImage : FirstFlashImage;
}

}  // namespace tallyhorn
