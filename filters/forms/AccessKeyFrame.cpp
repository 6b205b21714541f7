#include "filters/forms/AccessKeyFrame.h"

#include <QEvent>

namespace tallyhorn {

bool AccessKeyFrame::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut || first_ == nullptr || !first_->isEnabled())
        return QGroupBox::event(event);
    first_->setFocus(Qt::ShortcutFocusReason);
    return true;
}

}  // namespace tallyhorn
