#pragma once

#include <QWidget>

#include "storage/BackupProgress.h"

class QLabel;
class QProgressBar;

namespace tallyhorn {

/// The small window that says that messages are being written or read, while nothing else can be done; a
/// reading one also shows how far it has come.  User-interface thread only.
class frmSavingMessages final : public QWidget, public BackupProgress {
    Q_OBJECT

public:
    enum class Work { Saving, Loading };

    explicit frmSavingMessages(Work work = Work::Saving, QWidget* parent = nullptr);

    /// The window keeps its size whatever the numbers; a window that shows no progress takes no notice.
    void Show(std::uint64_t done, std::uint64_t total) override;

private:
    QProgressBar* pgbProgress;
    QLabel* lblProgress;
};

}  // namespace tallyhorn
