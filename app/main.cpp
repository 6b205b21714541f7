#include <QApplication>
#include <QMetaObject>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/Console.h"
#include "app/QtMessageBoxes.h"
#include "app/QtSaveDialog.h"
#include "config/MakeProfileFunctions.h"
#include "desktop/ProgramVersion.h"
#include "forms/AnsiString.h"
#include "forms/HeldKeys.h"
#include "forms/Pictures.h"
#include "platform/Heap.h"
#include "platform/TerminationSignals.h"

namespace {

using namespace tallyhorn;

constexpr int BadUsage = 2;

std::filesystem::path ProgramFolder() {
    return QCoreApplication::applicationDirPath().toStdString();
}

/// Runs the console until it is closed; gives the exit status.
int RunConsole(QApplication& application, TerminationSignals& termination,
               const std::filesystem::path& folder) {
    SystemClock clock;
    const auto mailslots = MakeMailslotTransport();
    const auto profiles = MakeProfileFunctions();
    InstanceLock instance("TallyhornListenerConsole");
    QtMessageBoxes boxes;
    QtSaveDialog saveDialog;
    const auto datagrams = MakeDatagramSockets();
    const auto programs = MakeProgramLauncher();
    const auto sound = MakeSoundDevice();
    const auto names = MakeUserNames();
    Console console(
        {instance, *mailslots, *profiles, clock, boxes, *datagrams, *programs, saveDialog, *sound, *names},
        folder, ProgramFolder());
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
    termination.Stop();
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    GrowHeapInLargeSteps();
    const auto termination = MakeTerminationSignals();
    const CommandLine line = ReadCommandLine(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
    switch (line.Asked) {
        case CommandLine::Wish::Help:
            std::cout << HelpText();
            return EXIT_SUCCESS;
        case CommandLine::Wish::Version:
            std::cout << "tallyhorn-console " << ProgramVersion() << "\n";
            return EXIT_SUCCESS;
        case CommandLine::Wish::Refuse:
            std::cerr << "tallyhorn-console: " << line.Refusal << "\nTry 'tallyhorn-console --help'.\n";
            return BadUsage;
        case CommandLine::Wish::Run:
            break;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tallyhorn-console"));
    QApplication::setApplicationVersion(ToQString(ProgramVersion()));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ConsoleIcon());
    HeldKeys heldKeys;
    QApplication::instance()->installEventFilter(&heldKeys);
    return RunConsole(application, *termination, line.Folder.empty() ? ProgramFolder() : line.Folder);
}
