#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Shows each message box in front of the window that DialogOwner returns.  That may be none until SetOwner
/// is called.
class QtMessageBoxes final : public MessageBoxes {
public:
    void SetOwner(QWidget* owner) { owner_ = owner; }

    void Inform(std::string_view text) override;
    void Warn(std::string_view text) override;
    bool Confirm(std::string_view text) override;
    bool ConfirmErasing(std::string_view text) override;
    bool Retry(std::string_view text) override;

private:
    QPointer<QWidget> owner_;
};

}  // namespace tallyhorn
