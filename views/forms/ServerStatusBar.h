#pragma once

#include <QElapsedTimer>
#include <array>
#include <cstdint>
#include <list>
#include <string_view>

#include "views/messages/Gate.h"
#include "views/messages/ServerDisplay.h"

class QLabel;
class QMainWindow;
class QProgressBar;

namespace tallyhorn {

class NoticeButton;

/// Fills the main window's status bar with its three panels, a progress bar and the notice, and shows the
/// wait cursor during long work.  During such work it keeps the gate in the state Gate::Work.  The window
/// owns the controls and must outlive this object.
class ServerStatusBar {
public:
    ServerStatusBar(QMainWindow& window, Gate& gate);

    void ShowPanel(StatusPanel panel, std::string_view text);
    void ShowPanelToolTip(StatusPanel panel, std::string_view text);

    void ShowNotice(Notice notice, std::string_view details);

    void BeginWork();
    void ShowProgress(std::uint64_t done, std::uint64_t total);
    void EndWork();

private:
    Gate& gate_;
    std::list<Gate::Work> works_;  ///< pieces of long work that run inside one another
    QElapsedTimer sinceBegin_;
    std::array<QLabel*, 3> stbMain{};
    QProgressBar* pgbWork = nullptr;
    NoticeButton* cmdNotice = nullptr;
};

}  // namespace tallyhorn
