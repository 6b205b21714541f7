#include <QApplication>
#include <QMetaObject>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/Console.h"
#include "app/QtMessageBoxes.h"
#include "app/QtSaveDialog.h"
#include "app/QuietParts.h"
#include "config/MakeProfileFunctions.h"
#include "desktop/forms/OwnHelpViewer.h"
#include "forms/HeldKeys.h"
#include "forms/Pictures.h"
#include "platform/Heap.h"
#include "platform/TerminationSignals.h"

namespace {

using namespace tallyhorn;

constexpr int BadUsage = 2;

/// Runs the console until it is closed; gives the exit status.
int RunConsole(QApplication& application, TerminationSignals& termination,
               const std::filesystem::path& folder) {
    SystemClock clock;
    const auto mailslots = MakeMailslotTransport();
    const auto profiles = MakeProfileFunctions();
    InstanceLock instance("TallyhornListenerConsole");
    QtMessageBoxes boxes;
    QtSaveDialog saveDialog;
    QuietSignals quiet;
    const auto datagrams = MakeDatagramSockets();
    const auto programs = MakeProgramLauncher();
    std::unique_ptr<HelpViewer> help = MakeSystemHelpViewer();
    if (help == nullptr)
        help = std::make_unique<OwnHelpViewer>();
    Console console(
        {instance, *mailslots, *profiles, clock, boxes, quiet, *datagrams, *programs, saveDialog, *help},
        folder);
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
            std::cout << "tallyhorn-console " << TALLYHORN_VERSION << "\n";
            return EXIT_SUCCESS;
        case CommandLine::Wish::Refuse:
            std::cerr << "tallyhorn-console: " << line.Refusal << "\nTry 'tallyhorn-console --help'.\n";
            return BadUsage;
        case CommandLine::Wish::Run:
            break;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tallyhorn-console"));
    QApplication::setApplicationVersion(QStringLiteral(TALLYHORN_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ConsoleIcon());
    HeldKeys heldKeys;
    QApplication::instance()->installEventFilter(&heldKeys);
    const std::filesystem::path folder =
        line.Folder.empty() ? std::filesystem::path(QCoreApplication::applicationDirPath().toStdString())
                            : line.Folder;
    return RunConsole(application, *termination, folder);
}
