#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <array>
#include <functional>
#include <vector>

#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "views/MessageCommands.h"
#include "views/ReceivedMessages.h"
#include "views/ServerDisplay.h"
#include "views/ServerLayout.h"

class QAction;
class QGroupBox;
class QLabel;
class QTabWidget;
class QTimer;
class QToolBar;

namespace tallyhorn {

class ConsolidatedTreeView;
class MessageListView;

/// What the main window asks when it is to go.
class ServerLifetime {
public:
    virtual ~ServerLifetime() = default;
    /// Whether the window may close; `byUser` where the user closed it, who is then asked.
    virtual bool QueryUnload(bool byUser) = 0;
    /// The window has closed.
    virtual void Unload() = 0;
};

/// The main window: the pages with their lists, menus, tool bar, status bar and the two timers of the
/// processing cycle.  User-interface thread only.  A command that the user gives in the middle of other work
/// waits until that work is done.
class frmServer final : public QMainWindow, public ServerDisplay {
    Q_OBJECT

public:
    explicit frmServer(ServerLifetime& lifetime);

    /// What the window shows and commands; all of it outlives the window.
    struct Parts {
        ReceivedMessages& Received;
        MessageCommands& Commands;
        ProcessingCycle& Cycle;
        SyslogEndpoint& Syslog;
    };
    void Load(const Parts& parts);

    /// Sets the size that the window has when it is not maximised; a width or height of 0 or less leaves that
    /// as it is, and no size leads beyond the screen.
    void RestoreSize(TwipsSize size);
    TwipsSize RestoredSize() const;
    /// Widths of all lists' columns, as saved; all 0 where none are.
    void SetColumnWidths(const ColumnWidthArray& widths);
    const ColumnWidthArray& ColumnWidths() const { return columnWidths_; }
    void ShowPage(MessagePage page, bool shown);

    /// Closes the window as the end of the user's session does: nothing is asked.
    void CloseWithoutQuestion();
    /// Answers what stands open as if the user had closed it, so that it does not hold the end up.
    static void DismissQuestions();

    /// Datagrams wait: handles them at once, or a little later where others were handled just before, since
    /// showing what came costs more than handling it.
    void HandleDatagrams();

    /// Takes in the rows that came, then lets waiting events run.
    void RunPendingEvents();

    bool IsVisible() const override { return isVisible(); }
    MessagePage CurrentPage() const override;
    void ShowPanel(StatusPanel panel, std::string_view text) override;
    void ShowPanelToolTip(StatusPanel panel, std::string_view text) override;
    void EnableView(ViewNumber view, bool enabled) override;
    void ShowView(ViewNumber view, bool shown) override;
    void EnablePollingTimer(bool enabled) override;
    void EnableResumeTimer(bool enabled) override;
    void ShowPauseCommand(bool paused) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    using Command = std::function<void()>;

    void BuildMenus();
    void BuildToolBar();
    void BuildPages();
    void BuildStatusBar();
    QAction* AddCommand(const char* name, const QString& caption, Command command);
    void BuildLists(const std::array<QGroupBox*, EventListCount>& frames, ViewNumber firstView);
    void ConnectList(ViewNumber view);

    void RunWhenIdle(const Command& command);
    void RunWaitingCommands();
    void RunAsWork(const Command& work);
    void Close(bool byUser);

    void LayOut();
    void PlaceParts();
    void ApplyColumnWidths();
    void KeepColumnWidths(ViewNumber view);
    MessageListView* ListView(ViewNumber view) const;
    QWidget* View(ViewNumber view) const;
    void ArrivalTick();
    void BuildTree();
    int Pixels(Twips length) const;
    Twips InTwips(int pixels) const;

    ServerLifetime& lifetime_;
    ReceivedMessages* received_ = nullptr;
    MessageCommands* commands_ = nullptr;
    ProcessingCycle* cycle_ = nullptr;
    SyslogEndpoint* syslog_ = nullptr;
    ColumnWidthArray columnWidths_{};
    std::vector<Command> waitingCommands_;
    QWidget* focusBeforeHiding_ = nullptr;
    QElapsedTimer sinceArrival_;
    int arrivalInterval_ = 0;  ///< in milliseconds
    int workDepth_ = 0;        ///< how many pieces of work are under way, one inside the other

    QTabWidget* tabMessageTypes = nullptr;
    std::array<QGroupBox*, EventListCount> fraNetBiosTypes{};
    std::array<QGroupBox*, EventListCount> fraSyslogTypes{};
    std::array<MessageListView*, EventListCount> lvwMessages{};
    std::array<MessageListView*, EventListCount> lvwSyslog{};
    QGroupBox* fraConsolidated = nullptr;
    ConsolidatedTreeView* tvwConsolidated = nullptr;
    QToolBar* tbrMain = nullptr;
    std::array<QLabel*, 3> stbMain{};
    QAction* mnuFile_DeleteMsg = nullptr;
    QAction* mnuFile_ClearAll = nullptr;
    QAction* mnuEditPause = nullptr;
    QAction* tbrPause = nullptr;
    QTimer* timCheck = nullptr;
    QTimer* timArrival = nullptr;
    QTimer* tmrResumeProcessing = nullptr;
};

}  // namespace tallyhorn
