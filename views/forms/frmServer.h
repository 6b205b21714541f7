#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "views/MessageCommands.h"
#include "views/forms/ActiveViewMark.h"
#include "views/forms/CommandBars.h"
#include "views/forms/CommandQueue.h"
#include "views/forms/ServerHost.h"
#include "views/forms/ServerPages.h"
#include "views/forms/ServerStatusBar.h"
#include "views/messages/Gate.h"
#include "views/messages/MessageContext.h"

class QTimer;

namespace tallyhorn {

class DetailWindow;

/// The main window.  It owns the pages, the menus, the bars and the two timers of the processing cycle.  It
/// runs the user's commands when the gate permits.
class frmServer final : public QMainWindow, public ServerDisplay {
    Q_OBJECT

public:
    frmServer(ServerLifetime& lifetime, Gate& gate);

    /// The objects that the window shows and those that its commands call.  All must outlive the window.
    struct Parts {
        const MessageContext& Context;
        MessageCommands& Commands;
        ServerCommands& Others;
        std::function<void()> TimCheckTick;
        std::function<void()> ResumeTick;
        std::function<void()> PauseCommand;
    };
    void Load(const Parts& parts);

    /// Sets the size that the window has when it is not maximised, limited to the size of the screen.  A
    /// width or height of 0 or less leaves that dimension unchanged.
    void RestoreSize(TwipsSize size);
    TwipsSize RestoredSize() const;
    /// Sets the columns' widths in all lists; all widths are 0 if none were saved.
    void SetColumnWidths(const ColumnWidthArray& widths);
    const ColumnWidthArray& ColumnWidths() const { return pages_->ColumnWidths(); }
    void ShowPage(MessagePage page, bool shown);

    /// Closes open dialogs and, when running work has ended, the window, without a question.
    void CloseWithoutQuestion();
    /// Closes all open dialogs and questions, as if the user had cancelled them.
    static void DismissQuestions();
    /// Calls DismissQuestions at once and then every 50 ms, because running work may ask several questions
    /// before it ends.
    void KeepDismissingQuestions();

    CommandQueue& Commands() { return queue_; }
    /// Runs a command of the user, now or when the gate permits.
    void Do(ServerCommand command);

    /// Lets the views add the rows that arrived, then runs pending events.
    void RunPendingEvents();

    bool IsVisible() const override { return isVisible() && !isMinimized(); }
    MessagePage CurrentPage() const override;
    bool HasPage(MessagePage page) const override;
    std::optional<std::int32_t> SelectedSlot(ViewNumber list) const override;
    void BringToFront(ViewNumber view) override { activeView_->BringToFront(view); }
    void ShowActiveView(ViewNumber view, bool alone) override { activeView_->Show(view, alone); }
    void ShowPanel(StatusPanel panel, std::string_view text) override { status_.ShowPanel(panel, text); }
    void ShowPanelToolTip(StatusPanel panel, std::string_view text) override {
        status_.ShowPanelToolTip(panel, text);
    }
    void EnableView(ViewNumber view, bool enabled) override { pages_->EnableView(view, enabled); }
    void ShowView(ViewNumber view, bool shown) override { pages_->ShowView(view, shown); }
    void ShowNotice(Notice notice, std::string_view details) override { status_.ShowNotice(notice, details); }
    void BeginWork() override { status_.BeginWork(); }
    void ShowProgress(std::uint64_t done, std::uint64_t total) override { status_.ShowProgress(done, total); }
    void EndWork() override { status_.EndWork(); }
    void EnableResumeTimer(bool enabled) override;
    void ShowPauseCommand(bool paused) override;
    void ShowFilterCommand(bool inForce) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void ConnectViews();
    void Execute(ServerCommand command, ViewNumber view, MessagePage page);
    void Close(bool byUser);

    void LayOut();
    void LayOutLater();
    void PlaceParts();
    bool CanLayOut() const { return parts_ != nullptr && !isMinimized(); }

    ServerLifetime& lifetime_;
    std::unique_ptr<const Parts> parts_;
    CommandQueue queue_;
    DetailWindow* details_ = nullptr;
    ActiveViewMark* activeView_ = nullptr;  ///< made by Load

    ServerPages* pages_ = nullptr;
    CommandBars bars_;
    ServerStatusBar status_;
    QTimer* timCheck = nullptr;
    QTimer* tmrResumeProcessing = nullptr;
    QTimer* timDismiss = nullptr;
};

}  // namespace tallyhorn
