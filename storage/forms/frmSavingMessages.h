#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;
class QProgressBar;

namespace tallyhorn {

/// The small window that is shown while messages are saved or loaded.  It has a progress bar only while
/// messages are loaded.
class frmSavingMessages final : public QWidget {
    Q_OBJECT

public:
    enum class Work { Saving, Loading };

    explicit frmSavingMessages(Work work = Work::Saving, QWidget* parent = nullptr);

    /// Shows how many messages have been loaded so far and how many there are.
    void ShowProgress(std::uint64_t done, std::uint64_t total);

private:
    QProgressBar* pgbProgress;
    QLabel* lblProgress;
};

}  // namespace tallyhorn
