#include "ui/FocusStyle.h"

#include <QStyleOption>

namespace tallyhorn {
namespace {

constexpr int FrameMargin = 3;  ///< the distance of the frame from the button's edge, in pixels

}  // namespace

/// Adds the frame only in the style Fusion; the other styles draw one themselves.
void FocusStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    constexpr State ByKeyboard = State_HasFocus | State_KeyboardFocusChange;
    if (element != CE_PushButton || (option->state & ByKeyboard) != ByKeyboard ||
        baseStyle()->name() != QLatin1String("fusion"))
        return;
    QStyleOptionFocusRect frame;
    frame.QStyleOption::operator=(*option);
    frame.rect.adjust(FrameMargin, FrameMargin, -FrameMargin, -FrameMargin);
    proxy()->drawPrimitive(PE_FrameFocusRect, &frame, painter, widget);
}

}  // namespace tallyhorn
