#pragma once

#include <QWidget>

namespace tallyhorn {

/// The small window that says that messages are being written or read, while nothing else can be done.
/// User-interface thread only.
class frmSavingMessages final : public QWidget {
    Q_OBJECT

public:
    explicit frmSavingMessages(QWidget* parent = nullptr);
};

}  // namespace tallyhorn
