#pragma once

#include <QGroupBox>

namespace tallyhorn {

/// A frame whose access key always leads to the same control inside it; Qt's own leads to the one that had
/// the focus last.  User-interface thread only.
class AccessKeyFrame final : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

    /// A control inside the frame.  Where it is disabled the key does what Qt's does.
    void SetFirst(QWidget* first) { first_ = first; }

protected:
    bool event(QEvent* event) override;

private:
    QWidget* first_ = nullptr;
};

}  // namespace tallyhorn
