#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/Console.h"
#include "config/TextProfileFunctions.h"
#include "desktop/forms/frmStartup.h"
#include "tests/forms/DialogFixture.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeDatagrams.h"
#include "tests/support/FakeHelpViewer.h"
#include "tests/support/FakeMailslots.h"
#include "tests/support/FakeNotificationArea.h"
#include "tests/support/FakePrograms.h"
#include "tests/support/FakeSaveDialog.h"
#include "tests/support/FakeSoundDevice.h"
#include "tests/support/FakeUserNames.h"
#include "tests/support/FakeWindow.h"
#include "tests/support/FileBytes.h"
#include "tests/support/Notifications.h"
#include "tests/support/TemporaryFolder.h"
#include "views/forms/ConsolidatedTreeView.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {

/// A whole console over a mailslot in memory and a folder of its own.
class ConsoleFixture : public DialogFixture {
protected:
    static constexpr std::uint16_t Port = 5514;

    QWidget& Dialog() override { return console_->Window(); }

    void TearDown() override {
        console_.reset();
        // The end of a console ends all loops of the process; after a loop of the application's own, those of
        // later dialogs run again.
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
        QCoreApplication::exec();
    }

    /// Over the files that are there.
    void Restart() {
        console_ = std::make_unique<Console>(
            Console::Machine{instance_, mailslots_, *profiles_, clock_, boxes_, datagrams_, programs_,
                             saveDialog_, area_, sound_, help_, names_},
            folder_.Path(), folder_.Path());
        ASSERT_TRUE(console_->Start());
        // A test that gives up a taken port ends the console before its window shows.
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
    /// What came is shown at once or very soon: waits until it is.
    void AwaitShown() {
        const QList<QTimer*> pacers = console_->Window().findChildren<QTimer*>(QStringLiteral("pacer"));
        AWAIT(std::none_of(pacers.begin(), pacers.end(),
                           [](const QTimer* pacer) { return pacer->isActive(); }));
    }
    /// Notifications of one type come by mailslot and are shown.
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
    /// Lets the window handle what was sent.
    void Handle() {
        AWAIT(datagrams_.Bound[Port].Waiting.empty());
        AWAIT(!Find<QTimer>("timArrival")->isActive());
        AwaitShown();
        // The view lays out what it was told of when it next comes to it.
        QCoreApplication::processEvents();
    }
    void ShowPage(int page) { Find<QTabWidget>("tabMessageTypes")->setCurrentIndex(page); }
    MessageListView* SyslogList(int element) {
        return Find<MessageListView>("lvwSyslog" + std::to_string(element));
    }
    ConsolidatedTreeView* Tree() { return Find<ConsolidatedTreeView>("tvwConsolidated"); }
    /// The tree's node at the end of the way, by the row in each group.
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
    /// As the window system tells that the user has closed the window.
    void CloseByUser() {
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(&console_->Window(), &event);
    }
    /// No other test's that runs at the same time.
    std::string InstanceName() const { return folder_.Path().filename().string(); }
    QString Panel(int number) { return Find<QLabel>("stbMain" + std::to_string(number))->text(); }
    std::string SettingsText() { return ReadBytes(folder_ / "thlisten.ini"); }

    TemporaryFolder folder_;
    InstanceLock instance_{InstanceName(), folder_ / "locks"};
    FakeMailslots mailslots_;
    FakeDatagrams datagrams_;
    std::unique_ptr<ProfileFunctions> profiles_ = MakeProfileFunctions();
    FakeClock clock_;
    bool keepsSplash_ = false;  ///< else it is gone before the test goes on
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
