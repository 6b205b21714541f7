#pragma once

#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QTabWidget>
#include <QWindow>

#include "app/Console.h"
#include "config/TextProfileFunctions.h"
#include "desktop/forms/frmStartup.h"
#include "tests/forms/DialogFixture.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDatagrams.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeMailslots.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FileBytes.h"
#include "tests/support/Notifications.h"
#include "tests/support/TemporaryFolder.h"
#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {

/// Owns a complete console over fakes of the system and a temporary folder.
class ConsoleFixture : public DialogFixture {
protected:
    static constexpr std::uint16_t Port = 5514;

    QWidget& Dialog() override { return console_->Window(); }

    void TearDown() override {
        console_.reset();
        // After the end of a console, Qt would end every later event loop at once.  Running the application's
        // own loop and ending it prevents that.
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        QCoreApplication::exec();
    }

    tallyhorn::Machine Machine(InstanceLock& instance) {
        return {.Instance = instance,
                .Mailslots = mailslots_,
                .Profiles = *profiles_,
                .Time = clock_,
                .Boxes = boxes_,
                .Datagrams = datagrams_,
                .Programs = programs_,
                .AskFile = saveDialog_,
                .Area = area_,
                .Sound = sound_,
                .Help = help_,
                .Names = names_,
                .Files = MakeFiles()};
    }

    /// Starts a console with the files in `folder_`.
    void Restart() {
        console_ = std::make_unique<Console>(Machine(instance_), folder_.Path(), programFolder_.Path());
        ASSERT_TRUE(console_->Start());
        // If a test cancels the question about a taken port, the console ends during its start.
        AWAIT(console_->HasEnded() || console_->Window().windowHandle()->isExposed());
        QCoreApplication::processEvents();
        if (!keepsSplash_)
            delete console_->Window().findChild<frmStartup*>();
    }

    void Start(const std::string& settings = "MessageViews=7\r\n") {
        WriteBytes(folder_ / "thlisten.ini", "[General]\r\n" + settings);
        Restart();
    }
    void Arrive(const std::string& name, const std::string& type) {
        ArriveText(NetBiosText({.Name = name, .Account = "N/A", .Computer = "pc", .Type = type}));
    }
    void ArriveText(const std::string& text) {
        mailslots_.ByName["TallyhornEngine"].Waiting.push_back(text + '\0');
    }
    void Poll() { QMetaObject::invokeMethod(Find<QTimer>("timCheck"), "timeout"); }
    /// Waits until the views show what has arrived.
    void AwaitShown() {
        const QList<QTimer*> throttles =
            console_->Window().findChildren<QTimer*>(QStringLiteral("repaintThrottle"));
        AWAIT(std::none_of(throttles.begin(), throttles.end(),
                           [](const QTimer* throttle) { return throttle->isActive(); }));
    }
    /// Lets notifications of one type arrive by mailslot and be shown.
    void Receive(const std::vector<std::string>& names, const std::string& type = "Error") {
        for (const std::string& name : names)
            Arrive(name, type);
        Poll();
        AwaitShown();
    }
    MessageListView* List(int element) {
        return Find<MessageListView>("lvwMessages" + std::to_string(element));
    }

    void StartListening() { Start("MessageViews=7\r\nSyslogUDPPort=5514\r\n"); }
    static std::string Datagram(const std::string& alarm, const std::string& type,
                                const std::string& computer, const std::string& description = "text") {
        return tallyhorn::Datagram({alarm, "System", "joe", computer, type, description});
    }
    void Send(const std::string& datagram) { ASSERT_TRUE(datagrams_.Arrive(Port, datagram)); }
    /// Waits until the datagrams that were sent are handled and shown.
    void Handle() {
        AWAIT(datagrams_.Bound[Port].Waiting.empty());
        AWAIT(!Find<QTimer>("timArrival")->isActive());
        AwaitShown();
        // The views lay out changed rows in a later event.
        QCoreApplication::processEvents();
    }
    void ShowPage(int page) { Find<QTabWidget>("tabMessageTypes")->setCurrentIndex(page); }
    MessageListView* SyslogList(int element) {
        return Find<MessageListView>("lvwSyslog" + std::to_string(element));
    }
    ConsolidatedTreeView* Tree() { return Find<ConsolidatedTreeView>("tvwConsolidated"); }
    /// Returns the tree's node with these row numbers, one for each level from the top.
    QModelIndex Node(const std::vector<int>& way) {
        QModelIndex index;
        for (const int row : way)
            index = Tree()->model()->index(row, 0, index);
        return index;
    }

    void Command(const std::string& key) { Find<QAction>(key)->trigger(); }
    static void ClickRow(QAbstractItemView* list, int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualRect(list->model()->index(row, 0)).center());
    }
    /// Sends the close event that the window system sends when the user closes the window.
    void CloseByUser() {
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(&console_->Window(), &event);
    }
    /// Returns a name that no other test running at the same time uses.
    std::string InstanceName() const { return folder_.Path().filename().string(); }
    QString Panel(int number) { return Find<QLabel>("stbMain" + std::to_string(number))->text(); }
    std::string SettingsText() { return ReadBytes(folder_ / "thlisten.ini"); }

    TemporaryFolder folder_, programFolder_;
    InstanceLock instance_{InstanceName(), folder_ / "locks"};
    FakeMailslots mailslots_;
    FakeDatagrams datagrams_;
    std::unique_ptr<ProfileFunctions> profiles_ = MakeProfileFunctions();
    FakeClock clock_;
    bool keepsSplash_ = false;  ///< if false, Restart deletes the splash window
    FakeMessageBoxes boxes_;
    FakePrograms programs_;
    FakeSaveDialog saveDialog_;
    FakeSoundDevice sound_;
    FakeUserNames names_;
    FakeNotificationArea area_;
    FakeHelpViewer help_;
    std::unique_ptr<Console> console_;
};

}  // namespace tallyhorn
