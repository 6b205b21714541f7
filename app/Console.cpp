#include "app/Console.h"

#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "app/ArrivalTimer.h"
#include "app/RunSummary.h"
#include "config/forms/frmPreferences.h"
#include "desktop/forms/frmStartup.h"
#include "filters/forms/frmDropFilters.h"
#include "filters/forms/frmFilter.h"
#include "platform/DataFolder.h"
#include "storage/forms/frmSavingMessages.h"

namespace tallyhorn {
namespace {

constexpr const char* SettingsFileName = "thlisten.ini";
constexpr const char* FilterFileName = "SavedFilters.dat";
constexpr const char* BackupFileName = "Backup.dat";
constexpr const char* JournalFileName = "Journal.dat";
constexpr const char* HelpFileName = "THListen.CHM";

constexpr std::string_view OneInstanceText =
    "Only one instance of the Tallyhorn Listener Console can be running at a time.  If you are logged into a "
    "remote session, make sure no other instances of the Listener Console are running on other desktops.";
constexpr std::string_view MailslotFailedText =
    "The mailslot used to receive NetBIOS messages could not be initialized.  Therefore, no mailslot "
    "messages "
    "will be received.  You may need to reboot the system to reinitialize the mailslot.";
constexpr std::string_view PortFailedBefore = "The Tallyhorn Listener Console could not bind to UDP port ";
constexpr std::string_view PortFailedAfter =
    ", on which it receives syslog messages.  This can happen if another instance of the Tallyhorn Listener "
    "Console is being run on a different desktop (e.g. RDP session), or if a different program has already "
    "bound to this port.  If you would like to close this instance of the Listener Console, click 'Cancel'.  "
    "To reconfigure this program to use a different port, click 'Retry.'";
constexpr std::chrono::milliseconds JournalInterval{100};
constexpr std::string_view NotProtectedText =
    "The console cannot write its journal, so that messages would be lost if it ended abnormally.  It tries "
    "again every ten seconds.  Is the disk full, or the console's folder read-only?";
constexpr std::string_view DamagedText =
    "Some messages of the previous run could not be read.  The damaged file is kept in the console's folder; "
    "its name contains \"damaged\".";
constexpr std::string_view CloseQuestion = "Are you sure you wish to close the console?";

/// The time after which the shut-down closes message boxes if perhaps no user is present.
constexpr std::chrono::seconds UnattendedBox{10};

}  // namespace

Console::Console(const Machine& machine, const std::filesystem::path& folder,
                 const std::filesystem::path& programFolder)
    : machine_(machine),
      folderLock_(folder),
      profile_(machine.Profiles, machine.Time),
      slices_(machine.Time, *this),
      window_(std::make_unique<frmServer>(static_cast<ServerLifetime&>(*this), gate_)),
      tray_(std::make_unique<frmTrayIcon>(machine.Area, static_cast<TrayHost&>(*this))),
      hiding_(*window_, *tray_),
      questions_(machine.Boxes, machine.AskFile, [this] { window_->Commands().DropWaiting(); }),
      received_(*window_, slices_),
      filters_(folder / FilterFileName),
      mailslot_(machine.Mailslots, machine.Time),
      context_{received_, *window_, questions_, slices_, gate_, machine.Time, currentAlarm_},
      saved_(machine.Files, folder, context_),
      viewFilter_(context_),
      commands_(context_, viewFilter_),
      timJournal(new QTimer(&wakeTarget_)),
      syslog_(machine.Datagrams, Reception(),
              [this] {
                  QMetaObject::invokeMethod(
                      &wakeTarget_, [this] { arrivals_->HandleDatagrams(); }, Qt::QueuedConnection);
              }),
      cycle_(mailslot_, syslog_, Reception()),
      eventViewer_(context_, machine.Programs),
      export_({context_, questions_}, folder,
              {SettingsFileName, FilterFileName, BackupFileName, JournalFileName, FolderLock::FileName}),
      help_(machine.Help, questions_),
      sound_(profile_, settings_, machine.Time, machine.Sound, {folder, programFolder}),
      helpKeys_([this](HelpContext context) { OpenHelp(context); }) {
    profile_.SetINIFileName(NarrowPath(folder / SettingsFileName));
    // The help file must be known before Start, because the message boxes of Start offer help.
    help_.SetHelpFile([folder, programFolder] { return FindOwnFile({folder, programFolder}, HelpFileName); });
}

Console::~Console() {
    window_.reset();
}

bool Console::Start() {
    if (!machine_.Instance.Acquire() || !folderLock_.Acquire()) {
        questions_.Warn(OneInstanceText);
        return false;
    }
    if (!mailslot_.InitializeMailslot(EngineMailslotName, true))
        questions_.Warn(MailslotFailedText);
    // Events run while a message box is open, and one of them may be the end of the session.
    if (HasEnded())
        return true;
    filters_.OpenFilterFile();
    filters_.LoadSuppressionFilters();
    LoadMainWindow();
    ApplyMessageViews();
    ApplySettings();
    LoadBackup();
    // The session may have ended during the steps above.  The console is shut down only here, because
    // these steps must not run after ShutDown.
    if (!gate_.Advance(Gate::Phase::Running)) {
        ShutDown();
        return true;
    }
    tray_->Initialize();
    tray_->ShowServerWindowMax();
    // The splash is shown later, by the event loop, because showing it lets Qt run events.
    if (!portFailed_)
        QMetaObject::invokeMethod(
            &wakeTarget_, [this] { ShowSplash(); }, Qt::QueuedConnection);
    else
        window_->Commands().Run([this] { AskAboutPort(); }, CommandQueue::Kind::Dialog);
    return true;
}

void Console::End() {
    switch (gate_.Decide(Gate::Request::End)) {
        case Gate::Answer::Run:
        case Gate::Answer::Queue:
            return window_->CloseWithoutQuestion();
        case Gate::Answer::Later:
            // Start is still running and will shut the console down before it returns.
            gate_.Advance(Gate::Phase::Ended);
            return frmServer::DismissQuestions();
        case Gate::Answer::Refuse:
            // The console is closing already, but a message about a failed save may keep it from ending.
            return window_->KeepDismissingQuestions();
    }
}

void Console::LoadMainWindow() {
    settings_ = ReadSettings(profile_);
    tray_->ShowSound(sound_.SoundOn());
    window_->Load({.Context = context_,
                   .Commands = commands_,
                   .Others = *this,
                   .TimCheckTick = [this] { cycle_.TimCheckTick(); },
                   .ResumeTick = [this] { cycle_.ResumeTick(); },
                   .PauseCommand = [this] { cycle_.PauseCommand(); }});
    arrivals_ = new ArrivalTimer(syslog_, cycle_, window_->Commands(), window_.get());
    Run();
    InitializeWinsock();
    received_.UpdateStatusCounts(received_.NetBios);
    received_.UpdateStatusCounts(received_.Syslog);
    received_.UpdateListViewStatus();
}

ReceptionParts Console::Reception() {
    return {context_, filters_, viewFilter_, static_cast<ArrivalSignals&>(*this), saved_.Arrivals()};
}

/// Reads the port from the settings file each time, since the user may have changed it.  A failure only sets
/// `portFailed_`; AskAboutPort asks the user later, when no dialog is open.
void Console::InitializeWinsock() {
    portFailed_ = !syslog_.InitializeWinsock(ReadSyslogPort(profile_));
}

/// Asks the user about a port that could not be bound, until it is bound or the user gives up.  While the
/// question is open, other work goes on, so the console may be shut down.
void Console::AskAboutPort() {
    while (portFailed_ && !HasEnded()) {
        const std::string port = std::to_string(ReadSyslogPort(profile_));
        const bool retry =
            questions_.Retry(std::string(PortFailedBefore).append(port).append(PortFailedAfter));
        if (HasEnded())
            return;
        if (!retry) {
            window_->CloseWithoutQuestion();
            return;
        }
        const bool accepted = AskPreferences();
        // The port may be free by now.  If the user cancelled the preferences, this is the last attempt; if
        // it fails, the console runs without syslog.
        if (portFailed_ && !HasEnded())
            InitializeWinsock();
        if (!accepted)
            return;
    }
}

/// Holds arrivals until all messages of the backup are restored, so that those come before new ones.
void Console::LoadBackup() {
    frmSavingMessages loading(frmSavingMessages::Work::Loading);
    loading.show();
    Run();
    {
        const Gate::Hold hold(gate_);
        saved_.StartThreads();
        loaded_ = saved_.Load(
            [&loading](std::uint64_t done, std::uint64_t total) { loading.ShowProgress(done, total); },
            [this] { return !HasEnded(); });
    }
    if (saved_.FoundDamage())
        window_->ShowNotice(Notice::DamagedBackup, DamagedText);
    QObject::connect(timJournal, &QTimer::timeout, &wakeTarget_, [this] { WorkOnJournal(); });
    timJournal->start(JournalInterval);
    cycle_.TakeOver(saved_.TakeArrivals(Channel::NetBios));
    syslog_.TakeOver(saved_.TakeArrivals(Channel::Syslog));
    received_.UpdateStatusCounts(received_.NetBios);
    received_.UpdateStatusCounts(received_.Syslog);
    received_.UpdateListViewStatus();
    Run();
}

void Console::WorkOnJournal() {
    saved_.Work();
    window_->ShowNotice(Notice::NotProtected, saved_.IsProtected() ? "" : NotProtectedText);
}

/// Shows the splash in front of the main window without the focus.  Does nothing if a dialog is open.
void Console::ShowSplash() {
    if (HasEnded() || QApplication::activeModalWidget() != nullptr)
        return;
    splash_ = new frmStartup(frmStartup::Role::Splash, machine_.Names, machine_.Time, window_.get());
    splash_->show();
    window_->activateWindow();
}

void Console::ApplyMessageViews() {
    const std::array<bool, MessagePageCount> shown = VisibleMessageViews(settings_.MessageViews);
    for (std::size_t page = 0; page < shown.size(); ++page)
        window_->ShowPage(static_cast<MessagePage>(page), shown.at(page));
}

void Console::ApplySettings() {
    ApplyDateStyle();
    window_->RestoreSize({settings_.CPWidth, settings_.CPHeight});
    window_->SetColumnWidths(settings_.ColumnWidths);
}

void Console::ApplyDateStyle() {
    settings_.Seperator = DateSeparator(settings_.Seperator);
    received_.SetDateStyle({settings_.DateTime != 0, settings_.Seperator});
}

void Console::ToggleViewFilter() {
    viewFilter_.ToggleViewFilter([this] { ShowFilterDialog(); });
}

void Console::ShowFilterDialog() {
    frmFilter dialog(viewFilter_, questions_, window_.get());
    Open(dialog);
}

/// Saves the window's size and the columns' widths even if the user refuses to close the console.
bool Console::QueryUnload(bool byUser) {
    if (HasEnded())
        return false;
    const bool goesOn = !byUser || questions_.Confirm(CloseQuestion);
    const TwipsSize size = window_->RestoredSize();
    settings_.CPWidth = size.Width;
    settings_.CPHeight = size.Height;
    settings_.ColumnWidths = window_->ColumnWidths();
    WriteSizes(profile_, settings_);
    attended_ = attended_ || (byUser && goesOn);
    return goesOn;
}

void Console::Unload() {
    // ShutDown lets events run, and one of them may call Unload again.
    if (gate_.Advance(Gate::Phase::Ended))
        ShutDown();
}

void Console::ShutDown() {
    arrivals_->Stop();
    timJournal->stop();
    // If no user is present, a message box about a failure must not keep the console from ending.
    if (!attended_)
        QTimer::singleShot(UnattendedBox, &wakeTarget_, [] { frmServer::DismissQuestions(); });
    if (loaded_) {
        mailslot_.Terminate();
        syslog_.Close();
    } else {
        cycle_.HoldWaiting();
        mailslot_.Terminate();
        syslog_.CloseUnhandled();
    }
    sound_.Close();
    tray_->Unload();
    machine_.Help.Close();
    // Not deleted, because this may run inside the splash's show() or hide(), which uses the splash
    // afterwards.
    if (splash_ != nullptr)
        splash_->hide();
    {
        frmSavingMessages saving;
        saving.show();
        Run();
        if (loaded_)
            saved_.Save();
        filters_.CloseFilterFile();
        WriteRunSummary(received_, cycle_.ReceivedCount(), syslog_.ReceivedCount());
    }
    window_->hide();
    // Calls exit() instead of quit(), which asks each window to close and fails if one of them refuses.
    QCoreApplication::exit(EXIT_SUCCESS);
}

// ---- the notification area

/// Makes the notification-area icon flash, and also the task-bar entry unless the window is hidden.
void Console::StartFlash() {
    // During the start the window is invisible only because it has not been shown yet, and if the session
    // ends then, the icon was never added.
    if (gate_.Is(Gate::State::Starting) || gate_.Is(Gate::State::Closing))
        return;
    tray_->StartFlash();
    if (!hiding_.IsHidden())
        QApplication::alert(window_.get());
}

/// Does nothing while a command or a timer's routine runs, because that one runs pending events itself.
void Console::LetEventsRun() {
    if (!window_->Commands().IsAtWork())
        Run();
}

void Console::Leave() {
    attended_ = true;
    window_->CloseWithoutQuestion();
}

void Console::ToggleSound() {
    sound_.SoundMode();
    tray_->ShowSound(sound_.SoundOn());
}

void Console::SetSoundOn(bool on) {
    sound_.SetSoundOn(on);
    tray_->ShowSound(on);
}

// ---- commands

void Console::ManageSuppressionFilters() {
    frmDropFilters dialog(filters_, questions_, machine_.Time, window_.get());
    dialog.InitForm();
    dialog.InitFormAsManager();
    Open(dialog);
}

void Console::AddSuppressionFilter(QWidget& over) {
    frmDropFilters dialog(filters_, questions_, machine_.Time, &over);
    dialog.InitForm();
    dialog.InitFormAsQuickAdd(currentAlarm_);
    Open(dialog);
}

void Console::ShowPreferences() {
    // The user is asked about the port only if binding it fails while this dialog is open.
    portFailed_ = false;
    AskPreferences();
    AskAboutPort();
}

/// Returns false if the user has cancelled the dialog.
bool Console::AskPreferences() {
    frmPreferences dialog({profile_, *this, questions_, *this}, window_.get());
    return Open(dialog) == QDialog::Accepted;
}

int Console::Open(QDialog& dialog) {
    const int result = dialog.exec();
    window_->Commands().DropWaiting();
    return result;
}

void Console::SetSeperator(std::string_view seperator) {
    settings_.Seperator = seperator;
    ApplyDateStyle();
}

void Console::SetDateTime(std::int32_t order) {
    settings_.DateTime = order;
    ApplyDateStyle();
}

void Console::ForgetSizes() {
    settings_.CPWidth = 0;
    settings_.CPHeight = 0;
    settings_.ColumnWidths = {};
}

void Console::ShowHelp(HelpContext context) {
    help_.ShowHelp(context, window_->winId());
}

/// Opens the help at once if a dialog or a question is open, because the user wants help with it.  Otherwise
/// opens the help as a command, which waits until other work has ended.
void Console::OpenHelp(HelpContext context) {
    if (QApplication::activeModalWidget() != nullptr)
        ShowHelp(context);
    else
        window_->Commands().Run([this, context] { ShowHelp(context); }, CommandQueue::Kind::Dialog);
}

void Console::ShowAbout() {
    frmStartup about(frmStartup::Role::AboutBox, machine_.Names, machine_.Time, window_.get());
    Open(about);
}

void Console::Run() {
    window_->RunPendingEvents();
}

}  // namespace tallyhorn
