#pragma once

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <vector>

#include "app/Console.h"
#include "config/TextProfileFunctions.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/TemporaryFolder.h"
#include "views/forms/MessageListView.h"

namespace tallyhorn {

/// Owns a whole console with a visible window, which receives from real mailslots and a real UDP port. Sound,
/// help, message boxes and the notification area are fakes.
class ConsoleUnderLoad {
public:
    /// `folder` holds the console's files and the mailslots.
    ConsoleUnderLoad(const TemporaryFolder& folder, DatagramSockets& datagrams)
        : instance_("bench", folder / "locks") {
        setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
        std::ofstream(folder / "thlisten.ini") << "[General]\nMessageViews=7\n";
        mailslots_ = MakeMailslotTransport();
        console_ = std::make_unique<Console>(
            Machine{instance_, *mailslots_, *profiles_, clock_, boxes_, datagrams, programs_, saveDialog_,
                    area_, sound_, help_, names_, MakeFiles()},
            folder.Path(), folder.Path());
        console_->Start();
        for (const MessageListView* const list : Window().findChildren<MessageListView*>())
            models_.push_back(list->model());
    }

    frmServer& Window() { return console_->Window(); }

    MessageStore& SyslogMessages() { return console_->Received().Syslog.Messages; }

    /// Returns the number of rows in all lists together.
    int Rows() const {
        int rows = 0;
        for (const QAbstractItemModel* const model : models_)
            rows += model->rowCount();
        return rows;
    }

    /// Runs pending events until `done` returns true.  Returns false if that takes more than two minutes.
    [[nodiscard]] static bool WorkUntil(const std::function<bool()>& done) {
        QTimer watch;
        watch.start(5);
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        // Does not use a QEventLoop: the end of a console quits the application, which would end the event
        // loops of later consoles at once.
        do {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (done())
                return true;
        } while (std::chrono::steady_clock::now() < end);
        return false;
    }

    /// Saves the messages and ends the console.  Returns false if it does not end within two minutes.
    [[nodiscard]] bool End() {
        console_->End();
        return WorkUntil([this] { return console_->HasEnded(); });
    }

private:
    InstanceLock instance_;
    std::unique_ptr<MailslotTransport> mailslots_;
    std::unique_ptr<ProfileFunctions> profiles_ = MakeProfileFunctions();
    SystemClock clock_;
    FakeMessageBoxes boxes_;
    FakePrograms programs_;
    FakeSaveDialog saveDialog_;
    FakeSoundDevice sound_;
    FakeUserNames names_;
    FakeHelpViewer help_;
    FakeNotificationArea area_;
    std::unique_ptr<Console> console_;
    std::vector<const QAbstractItemModel*> models_;
};

}  // namespace tallyhorn
