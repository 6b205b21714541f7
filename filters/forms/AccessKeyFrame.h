#pragma once

#include <QGroupBox>

namespace tallyhorn {

/// A frame whose access key always moves the focus to the same control inside it.  In a QGroupBox it moves
/// the focus to the control that had it last.
class AccessKeyFrame final : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

    /// Sets the control, which is inside the frame.  While it is disabled, the key acts as in a QGroupBox.
    void SetFirst(QWidget* first) { first_ = first; }

protected:
    bool event(QEvent* event) override;

private:
    QWidget* first_ = nullptr;
};

}  // namespace tallyhorn
