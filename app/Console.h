#pragma once

#include <QObject>
#include <QPointer>
#include <filesystem>
#include <memory>

#include "app/Machine.h"
#include "app/Questions.h"
#include "config/PreferencesHost.h"
#include "config/PrivateProfile.h"
#include "config/Settings.h"
#include "desktop/AlertSound.h"
#include "desktop/forms/WindowHiding.h"
#include "desktop/forms/frmTrayIcon.h"
#include "desktop/help/Help.h"
#include "desktop/help/forms/HelpKeys.h"
#include "filters/SuppressionFilters.h"
#include "filters/ViewFilter.h"
#include "platform/FolderLock.h"
#include "platform/TimeSlices.h"
#include "reception/ArrivalSignals.h"
#include "reception/ProcessingCycle.h"
#include "reception/SyslogEndpoint.h"
#include "reception/cvbMailslot.h"
#include "storage/MessageExport.h"
#include "storage/SavedMessages.h"
#include "views/EventViewer.h"
#include "views/MessageCommands.h"
#include "views/forms/frmServer.h"
#include "views/messages/Gate.h"
#include "views/messages/ReceivedMessages.h"

class QDialog;
class QTimer;

namespace tallyhorn {

class ArrivalTimer;
class frmStartup;

/// Owns the console's state and windows, and starts them and shuts them down in the required order.
class Console final : private ServerLifetime,
                      private ServerCommands,
                      private PreferencesHost,
                      private PendingEvents,
                      private ArrivalSignals,
                      private TrayHost {
public:
    /// `folder` has the settings, the filters and the backup; the help file and the sound are in `folder` or
    /// `programFolder`.
    Console(const Machine& machine, const std::filesystem::path& folder,
            const std::filesystem::path& programFolder);
    ~Console() override;

    /// Shows the console.  If another console is running, shows a message instead and returns false.
    bool Start();
    /// Closes the console without a question, as at the end of the user's session.  Cancels all open dialogs
    /// and questions, even if the console is already closing.
    void End() override;
    /// Returns whether the console has been shut down.
    bool HasEnded() const { return gate_.CurrentPhase() == Gate::Phase::Ended; }

    frmServer& Window() { return *window_; }
    /// Returns the messages, for benchmarks.
    ReceivedMessages& Received() { return received_; }
    /// Returns the menu of the notification-area icon, for areas that show it themselves.
    QMenu& PopUpMenu() { return tray_->PopUpMenu(); }

private:
    bool QueryUnload(bool byUser) override;
    void Unload() override;
    void PlayAlertSound() override { sound_.PlayAlertSound(); }
    void StartFlash() override;
    void ShowMainWindow(bool maximized) override { hiding_.Show(maximized); }
    void UncoverMainWindow() override { hiding_.Uncover(); }
    bool IsMainWindowHidden() const override { return hiding_.IsHidden(); }
    void LetEventsRun() override;
    void ToggleSound() override;
    void AskForAbout() override { window_->Do(ServerCommand::About); }
    void AskForHelp() override { OpenHelp(HelpContext::Contents); }
    void Leave() override;
    void ToggleViewFilter() override;
    void ManageSuppressionFilters() override;
    void AddSuppressionFilter(QWidget& over) override;
    void OpenEventViewer(ViewNumber view, MessagePage page) override {
        eventViewer_.OpenEventViewer(view, page);
    }
    void ExportMessages(MessagePage page) override { export_.ExportMessages(page); }
    void ShowPreferences() override;
    void ShowHelp() override { ShowHelp(HelpContext::MainWindow); }
    void ShowAbout() override;
    void InitializeWinsock() override;
    std::optional<std::int32_t> ListeningPort() const override { return syslog_.ListeningPort(); }
    void SetSeperator(std::string_view seperator) override;
    void SetSoundOn(bool on) override;
    void SetDateTime(std::int32_t order) override;
    void ShowTab(int tab, bool shown) override { window_->ShowPage(static_cast<MessagePage>(tab), shown); }
    void ForgetSizes() override;
    void MaximizeWindow() override { hiding_.Show(true); }
    void ShareOutColumnWidths() override { window_->SetColumnWidths(settings_.ColumnWidths); }
    void Run() override;

    ReceptionParts Reception();
    void LoadMainWindow();
    void ShutDown();
    bool AskPreferences();
    int Open(QDialog& dialog);
    void ApplyDateStyle();
    void AskAboutPort();
    void LoadBackup();
    void WorkOnJournal();
    void ShowSplash();
    void ApplyMessageViews();
    void ApplySettings();
    void ShowFilterDialog();
    void ShowHelp(HelpContext context);
    void OpenHelp(HelpContext context);

    Machine machine_;
    FolderLock folderLock_;
    PrivateProfile profile_;
    Settings settings_;
    AlarmRecord currentAlarm_;
    TimeSlices slices_;
    Gate gate_{Gate::Phase::Starting};
    std::unique_ptr<frmServer> window_;  ///< destroyed first, because its views read the members below
    std::unique_ptr<frmTrayIcon> tray_;
    WindowHiding hiding_;
    Questions questions_;
    ReceivedMessages received_;
    SuppressionFilters filters_;
    cvbMailslot mailslot_;
    const MessageContext context_;
    SavedMessages saved_;
    bool loaded_ = false;  ///< whether all saved messages were loaded, so that saving them loses none
    ViewFilter viewFilter_;
    MessageCommands commands_;
    QObject wakeTarget_;  ///< receives queued calls; its destruction cancels them
    QTimer* timJournal;   ///< owned by `wakeTarget_`
    SyslogEndpoint syslog_;
    ProcessingCycle cycle_;
    ArrivalTimer* arrivals_ = nullptr;  ///< owned by the window
    EventViewer eventViewer_;
    MessageExport export_;
    Help help_;
    AlertSound sound_;
    HelpKeys helpKeys_;
    QPointer<frmStartup> splash_;
    bool portFailed_ = false;
    bool attended_ = false;  ///< whether the user closed the console and so can answer message boxes
};

}  // namespace tallyhorn
