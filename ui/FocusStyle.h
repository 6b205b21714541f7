#pragma once

#include <QProxyStyle>

namespace tallyhorn {

/// The system's style, with a frame around the caption of the push button that has the focus.  Without it,
/// Qt's style Fusion draws a default button the same with and without the focus.
class FocusStyle final : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
};

}  // namespace tallyhorn
