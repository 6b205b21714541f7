#pragma once

#include <QGroupBox>

namespace tallyhorn {

/// A frame whose access key always moves the focus to the same control inside it.  The access key of a
/// QGroupBox moves the focus to the control in it that most recently had the focus.
class AccessKeyFrame final : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

    /// Sets the control in the frame that the access key gives the focus to.  While that control is disabled,
    /// the key gives the focus to the same control as in a QGroupBox.
    void SetFirst(QWidget* first) { first_ = first; }

protected:
    bool event(QEvent* event) override;

private:
    QWidget* first_ = nullptr;
};

}  // namespace tallyhorn
