#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;
class QProgressBar;

namespace tallyhorn {

/// The small window that is shown while messages are saved or loaded.  Only for loading it has a progress
/// bar.
class frmSavingMessages final : public QWidget {
    Q_OBJECT

public:
    enum class Work { Saving, Loading };

    explicit frmSavingMessages(Work work = Work::Saving, QWidget* parent = nullptr);

    /// Shows how many messages are loaded so far and in all.
    void ShowProgress(std::uint64_t done, std::uint64_t total);

private:
    QProgressBar* pgbProgress;
    QLabel* lblProgress;
};

}  // namespace tallyhorn
