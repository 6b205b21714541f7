#include <QApplication>
#include <QFileInfo>
#include <QMetaObject>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "app/CommandLine.h"
#include "app/Console.h"
#include "app/QtMessageBoxes.h"
#include "app/QtSaveDialog.h"
#include "config/TextProfileFunctions.h"
#include "desktop/forms/QtNotificationArea.h"
#include "desktop/help/forms/OwnHelpViewer.h"
#include "platform/CommandLineProgram.h"
#include "platform/DataFolder.h"
#include "platform/Heap.h"
#include "platform/PathText.h"
#include "platform/TerminationSignals.h"
#include "records/AnsiText.h"
#include "ui/FocusStyle.h"
#include "ui/HeldKeys.h"
#include "ui/Pictures.h"

namespace {

using namespace tallyhorn;

constexpr int BadUsage = 2;

/// Returns the folder of the program, which holds the help file and the sound.
std::filesystem::path ProgramFolder() {
    return QFileInfo(QCoreApplication::applicationFilePath()).filesystemAbsolutePath();
}

/// Runs the console until it is closed, and returns the exit status.
int RunConsole(QApplication& application, TerminationSignals& termination,
               const std::filesystem::path& folder) {
    SystemClock clock;
    const auto mailslots = MakeMailslotTransport();
    const auto profiles = MakeProfileFunctions();
    InstanceLock instance("TallyhornListenerConsole");
    QtMessageBoxes boxes;
    QtSaveDialog saveDialog;
    QtNotificationArea area;
    const auto datagrams = MakeDatagramSockets();
    const auto programs = MakeProgramLauncher();
    const auto sound = MakeSoundDevice();
    std::unique_ptr<HelpViewer> help = MakeSystemHelpViewer();
    if (help == nullptr)
        help = std::make_unique<OwnHelpViewer>();
    const auto names = MakeUserNames();
    Console console({.Instance = instance,
                     .Mailslots = *mailslots,
                     .Profiles = *profiles,
                     .Time = clock,
                     .Boxes = boxes,
                     .Datagrams = *datagrams,
                     .Programs = *programs,
                     .AskFile = saveDialog,
                     .Area = area,
                     .Sound = *sound,
                     .Help = *help,
                     .Names = *names,
                     .Files = MakeFiles()},
                    folder, ProgramFolder());
    area.SetMenu(console.PopUpMenu());
    boxes.SetOwner(&console.Window());
    saveDialog.SetOwner(&console.Window());
    termination.Start([&] {
        QMetaObject::invokeMethod(
            &application, [&] { console.End(); }, Qt::QueuedConnection);
    });
    const bool started = console.Start();
    int status = console.HasEnded() ? EXIT_SUCCESS : EXIT_FAILURE;
    if (started && !console.HasEnded())
        status = QApplication::exec();
    // On Windows, the end of the session may end the event loop while a question is open and before the
    // console has been shut down.
    console.End();
    termination.Stop();
    return status;
}

/// Returns why the console cannot keep its files in the folder, or an empty text if it can.
std::string PrepareDataFolder(const std::filesystem::path& folder) {
    const std::string advice = "Use --folder to name one.";
    if (folder.empty())
        return "There is no folder in which settings, filters and messages could be kept. " + advice;
    const std::optional<SystemError> error = MakeDataFolder(folder);
    return error ? "The folder '" + Utf8FromPath(folder) +
                       "', in which settings, filters and messages are to be kept, could not be made: " +
                       error->Text + ". " + advice
                 : "";
}

/// Prints the help, the version or the reason for the refusal, or shows it in a message box if the program
/// has no output.  Returns the exit status.
int TellAndQuit(const CommandLine& line, int argc, char** argv) {
    const bool refused = line.Asked == CommandLine::Wish::Refuse;
    const std::string text =
        refused ? "tallyhorn-console: " + line.Refusal + "\nTry 'tallyhorn-console --help'.\n"
        : line.Asked == CommandLine::Wish::Help ? HelpText()
                                                : "tallyhorn-console " TALLYHORN_VERSION "\n";
    if (AttachOutput(refused ? stderr : stdout)) {
        (refused ? std::cerr : std::cout) << text;
    } else {
        const QApplication application(argc, argv);
        QtMessageBoxes().Inform(AnsiFromUtf8(text));
    }
    return refused ? BadUsage : EXIT_SUCCESS;
}

/// Prints `why` to standard error and shows it in a message box, because a user who started the console from
/// a menu does not see standard error.  Returns the exit status.
int RefuseToRun(QApplication& application, TerminationSignals& termination, const std::string& why) {
    std::cerr << "tallyhorn-console: " << why << '\n';
    termination.Start([&] {
        QMetaObject::invokeMethod(
            &application, [] { frmServer::DismissQuestions(); }, Qt::QueuedConnection);
    });
    QtMessageBoxes().Warn(AnsiFromUtf8(why));
    termination.Stop();
    return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    GrowHeapInLargeSteps();
    const auto termination = MakeTerminationSignals();
    const CommandLine line = ReadCommandLine(ProgramArguments(argc, argv));
    if (line.Asked != CommandLine::Wish::Run)
        return TellAndQuit(line, argc, argv);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tallyhorn-console"));
    QApplication::setApplicationVersion(QStringLiteral(TALLYHORN_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tallyhorn-console"));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ConsoleIcon());
    QApplication::setStyle(new FocusStyle);
    HeldKeys heldKeys;
    QApplication::instance()->installEventFilter(&heldKeys);
    if (!line.Folder.empty())
        return RunConsole(application, *termination, line.Folder);
    const std::filesystem::path folder = ChooseDataFolder(ProgramFolder());
    const std::string why = PrepareDataFolder(folder);
    return why.empty() ? RunConsole(application, *termination, folder)
                       : RefuseToRun(application, *termination, why);
}
