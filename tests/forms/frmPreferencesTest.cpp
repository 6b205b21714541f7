#include <QClipboard>
#include <QLabel>

#include "config/forms/frmPreferences.h"
#include "tests/forms/ControlChecks.h"
#include "tests/forms/DialogFixture.h"
#include "tests/support/PreferencesParts.h"

namespace tallyhorn {
namespace {

class frmPreferencesTest : public DialogFixture {
protected:
    QWidget& Dialog() override { return *window_; }
    void Open(const std::string& entries) {
        parts_.Fill(entries);
        window_ = std::make_unique<frmPreferences>(parts_.All());
        ShowDialog();
    }
    static bool IsBusy() { return QApplication::overrideCursor() != nullptr; }
    /// Returns the names of all check boxes and radio buttons that are checked.
    std::string Checked() {
        std::string names;
        for (const auto* const button : window_->findChildren<QAbstractButton*>())
            names += button->isChecked() ? button->objectName().toStdString() + " " : "";
        return names;
    }

    PreferencesParts parts_;
    std::unique_ptr<frmPreferences> window_;
};

TEST_F(frmPreferencesTest, ShowsTheSettingsFileEachTimeItIsOpened) {
    Open("SyslogUDPPort=514\r\nSeperator=\xB7\r\nSoundOn=1\r\nMessageViews=5\r\nDateTime=7\r\n");
    EXPECT_EQ(Text("txtSyslogUDPPort") + Text("txtSeperator"), "514\u00B7");
    EXPECT_EQ(Checked(), "chkSound chkShowTab0 chkShowTab2 optDateTime1 ");
    ExpectSoundControls(*window_);
    Open("");
    EXPECT_EQ(Text("txtSyslogUDPPort"), "0");
    EXPECT_EQ(Checked(), "optDateTime0 ");
    EXPECT_EQ(Focus(), "txtSyslogUDPPort");
    Press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(Focus(), "txtSeperator");
    Press(Qt::Key_P, Qt::AltModifier);
    EXPECT_EQ(Focus(), "txtSyslogUDPPort");
}

TEST_F(frmPreferencesTest, SavesWhatIsShown) {
    Open("SyslogUDPPort=514\r\n");
    Type("txtSyslogUDPPort", " 1514 ");
    for (const char* const name : {"chkSound", "chkShowTab0", "chkShowTab2", "optDateTime1"})
        Click(name);
    Type("txtSeperator", QString(QChar(0xB7)) + QChar(0x2192));
    parts_.Events.Event = [this] {
        EXPECT_TRUE(IsBusy());
        EXPECT_EQ(parts_.Bytes(), "[General]\r\nSyslogUDPPort=514\r\n") << "nothing is saved yet";
    };
    Click("cmdOK");
    EXPECT_FALSE(IsBusy() || window_->isVisible());
    EXPECT_EQ(parts_.Bytes(),
              "[General]\r\nSyslogUDPPort= 1514 \r\nSeperator=\xB7?\r\nSoundOn=1\r\nMessageViews=5\r\n"
              "DateTime=1\r\n");
}

TEST_F(frmPreferencesTest, CancelChangesNothing) {
    const std::function<void()> ways[] = {[&] { Click("cmdCancel"); }, [&] { Press(Qt::Key_Escape); },
                                          [&] { window_->close(); }};
    for (const auto& cancel : ways) {
        Open("SyslogUDPPort=514\r\n");
        Type("txtSyslogUDPPort", "1514");
        Click("chkSound");
        cancel();
        EXPECT_FALSE(window_->isVisible());
        EXPECT_EQ(parts_.Bytes(), "[General]\r\nSyslogUDPPort=514\r\n");
        EXPECT_EQ(parts_.Host.Held, Settings());
    }
}

TEST_F(frmPreferencesTest, StaysOpenUntilThePortIsAccepted) {
    Open("SyslogUDPPort=514\r\n");
    QTest::keyClicks(window_->focusWidget(), "5 14");  // the port is selected, so typing replaces it
    Press(Qt::Key_Return);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(Text("txtSyslogUDPPort"), "5 14");
    EXPECT_EQ(Focus(), "txtSyslogUDPPort");
    QTest::keyClicks(window_->focusWidget(), "32768");  // beyond 16 bits with a sign
    EXPECT_EQ(Find<QLabel>("lblPortNote")->text().toStdString(), "Used from the next start");
    Click("cmdOK");
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(IsBusy());
    EXPECT_EQ(parts_.Bytes(), "[General]\r\nSyslogUDPPort=32768\r\n");
    Click("cmdReset");
    EXPECT_EQ(parts_.Host.WindowCalls, "maximize share ");
    EXPECT_EQ(Text("txtSyslogUDPPort"), "32768") << "a reset keeps what was typed";
    Type("txtSyslogUDPPort", "32767");
    Press(Qt::Key_Enter);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(parts_.Boxes.Shown.size(), 2U) << "one box for the first port, one for the reset";
}

TEST_F(frmPreferencesTest, InputDuringASaveHasNoEffectOnIt) {
    Open("SyslogUDPPort=514\r\nMessageViews=7\r\n");
    parts_.Events.Event = [this] {
        Click("cmdOK");
        Click("cmdReset");
        Type("txtSeperator", "late");
        Click("cmdCancel");
        EXPECT_FALSE(window_->isVisible());
    };
    int finished = 0;
    QObject::connect(window_.get(), &QDialog::finished, window_.get(), [&finished] { ++finished; });
    Click("cmdOK");
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(parts_.Events.Runs, 1);
    EXPECT_TRUE(parts_.Boxes.Shown.empty());
    EXPECT_EQ(
        parts_.Bytes(),
        "[General]\r\nSyslogUDPPort=514\r\nMessageViews=7\r\nSeperator=\r\nSoundOn=0\r\nDateTime=0\r\n");
}

TEST_F(frmPreferencesTest, RefusesToPasteLineEnds) {
    Open("");
    for (const char* const text : {"-\nSoundOn=1", "-\rx"}) {
        QApplication::clipboard()->setText(QString::fromLatin1(text));
        Find("txtSeperator")->setFocus();
        QTest::keySequence(Find("txtSeperator"), QKeySequence::Paste);
        EXPECT_EQ(Text("txtSeperator"), "");
    }
}

}  // namespace
}  // namespace tallyhorn
