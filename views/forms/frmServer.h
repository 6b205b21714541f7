#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <array>
#include <functional>
#include <list>
#include <memory>

#include "views/MessageCommands.h"
#include "views/ServerLayout.h"
#include "views/forms/CommandBars.h"
#include "views/forms/CommandQueue.h"
#include "views/forms/ServerHost.h"
#include "views/messages/Gate.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

class QGroupBox;
class QLabel;
class QProgressBar;
class QTabWidget;
class QTimer;

namespace tallyhorn {

class ConsolidatedTreeView;
class MessageListView;
class DetailWindow;

/// The main window: the pages with their lists, menus, tool bar, status bar and the two timers of the
/// processing cycle.  User-interface thread only.  A command that the user gives in the middle of other work
/// waits until that work is done.
class frmServer final : public QMainWindow, public ServerDisplay {
    Q_OBJECT

public:
    frmServer(ServerLifetime& lifetime, Gate& gate);

    /// What the window shows and commands; all of it outlives the window.
    struct Parts {
        ReceivedMessages& Received;
        MessageCommands& Commands;
        ServerCommands& Others;
        MessageBoxes& Boxes;
        AlarmRecord& CurrentAlarm;
        const Clock& Time;
        std::function<void()> TimCheckTick;
        std::function<void()> ResumeTick;
        std::function<void()> PauseCommand;
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

    CommandQueue& Commands() { return queue_; }
    /// Does what the user commands, at once or when its turn comes.
    void Do(ServerCommand command);

    /// Takes in the rows that came, then lets waiting events run.
    void RunPendingEvents();

    bool IsVisible() const override { return isVisible() && !isMinimized(); }
    MessagePage CurrentPage() const override;
    std::optional<std::int32_t> SelectedSlot(ViewNumber list) const override;
    void ShowPanel(StatusPanel panel, std::string_view text) override;
    void ShowPanelToolTip(StatusPanel panel, std::string_view text) override;
    void EnableView(ViewNumber view, bool enabled) override;
    void ShowView(ViewNumber view, bool shown) override;
    void BeginWork() override;
    void ShowProgress(std::uint64_t done, std::uint64_t total) override;
    void EndWork() override;
    void EnableResumeTimer(bool enabled) override;
    void ShowPauseCommand(bool paused) override;
    void ShowFilterCommand(bool inForce) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// The page of one channel: fraNetBiosTypes and lvwMessages, or fraSyslogTypes and lvwSyslog.
    struct ChannelControls {
        std::array<QGroupBox*, EventListCount> Frames{};       ///< from the top of the page
        std::array<MessageListView*, EventListCount> Lists{};  ///< by list index
    };

    void BuildPages();
    void BuildStatusBar();
    void BuildLists(const ChannelTraits& traits);
    QGroupBox* AddFrame(MessagePage page, std::string_view caption, const QString& name);
    void ConnectList(ViewNumber view);

    void Execute(ServerCommand command, ViewNumber view);
    void Close(bool byUser);

    void LayOut();
    void LayOutLater();
    void PlaceParts();
    void ApplyColumnWidths();
    void KeepColumnWidths(ViewNumber view);
    ChannelControls& ControlsOf(Channel channel);
    MessageListView* ListView(ViewNumber view) const;
    std::array<MessageListView*, ConsolidatedView> AllLists() const;
    QWidget* View(ViewNumber view) const;
    void BuildTree();
    int Pixels(Twips length) const;
    Twips InTwips(int pixels) const;

    ServerLifetime& lifetime_;
    Gate& gate_;
    std::unique_ptr<const Parts> parts_;
    CommandQueue queue_;
    DetailWindow* details_ = nullptr;
    ColumnWidthArray columnWidths_{};
    QWidget* focusBeforeHiding_ = nullptr;
    QElapsedTimer sinceLongWork_;
    std::list<Gate::Work> longWorks_;  ///< pieces of long work that run inside one another

    QTabWidget* tabMessageTypes = nullptr;
    std::array<ChannelControls, ChannelCount> channels_;
    QGroupBox* fraConsolidated = nullptr;
    ConsolidatedTreeView* tvwConsolidated = nullptr;
    CommandBars bars_;
    std::array<QLabel*, 3> stbMain{};
    QProgressBar* pgbWork = nullptr;
    QTimer* timCheck = nullptr;
    QTimer* tmrResumeProcessing = nullptr;
    QTimer* timDismiss = nullptr;
};

}  // namespace tallyhorn
