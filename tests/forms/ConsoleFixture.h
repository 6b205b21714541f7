#pragma once

#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "app/Console.h"
#include "app/QuietParts.h"
#include "config/MakeProfileFunctions.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeDatagrams.h"
#include "tests/fakes/FakeMailslots.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/TemporaryFolder.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {

/// A whole console over a mailslot in memory and a folder of its own.
class ConsoleFixture : public ::testing::Test {
protected:
    void TearDown() override { console_.reset(); }

    /// Over the files that are there.
    void Restart() {
        console_ = std::make_unique<Console>(Console::Machine{instance_, mailslots_, *profiles_, clock_,
                                                              boxes_, signals_, filter_, datagrams_},
                                             folder_.Path());
        ASSERT_TRUE(console_->Start());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&console_->Window()));
    }

    void Start(const std::string& settings = "MessageViews=7\r\n") {
        std::ofstream(folder_ / "thlisten.ini", std::ios::binary) << "[General]\r\n" << settings;
        Restart();
    }
    void Arrive(const std::string& name, const std::string& type) {
        mailslots_.Slots["TallyhornEngine"].Waiting.push_back(
            "Date: 08/21/2008 14:05:09\r\n\r\n\r\n(" + name +
            ")\r\n\r\n\r\nLog: System\r\nSource: Disk\r\nType: " + type +
            "\r\nCategory: None\r\nEventID: 7\r\nAccount: N/A\r\nComputer: pc\r\nDescription: text" + '\0');
    }
    void Poll() { QMetaObject::invokeMethod(Find<QTimer>("timCheck"), "timeout"); }
    /// What came is shown at once or very soon: waits until it is.
    void AwaitShown() {
        const QList<QTimer*> pacers = console_->Window().findChildren<QTimer*>(QStringLiteral("pacer"));
        QTRY_VERIFY(std::none_of(pacers.begin(), pacers.end(),
                                 [](const QTimer* pacer) { return pacer->isActive(); }));
    }
    template <typename Control>
    Control* Find(const char* name) {
        auto* const control = console_->Window().findChild<Control*>(QString::fromLatin1(name));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    MessageListView* List(int element) {
        return Find<MessageListView>(("lvwMessages" + std::to_string(element)).c_str());
    }
    /// As the window system tells that the user has closed the window.
    void CloseByUser() {
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(&console_->Window(), &event);
    }
    QString Panel(int number) { return Find<QLabel>(("stbMain" + std::to_string(number)).c_str())->text(); }
    std::string SettingsText() {
        std::ifstream file(folder_ / "thlisten.ini", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder folder_;
    InstanceLock instance_{"console", folder_ / "locks"};
    FakeMailslots mailslots_;
    FakeDatagrams datagrams_;
    std::unique_ptr<ProfileFunctions> profiles_ = MakeProfileFunctions();
    FakeClock clock_;
    FakeMessageBoxes boxes_;
    QuietSignals signals_;
    NoViewFilter filter_;
    std::unique_ptr<Console> console_;
};

}  // namespace tallyhorn
