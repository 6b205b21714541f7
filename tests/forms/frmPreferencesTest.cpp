#include <gmock/gmock.h>

#include <QApplication>
#include <QClipboard>
#include <memory>

#include "config/forms/frmPreferences.h"
#include "tests/fakes/PreferencesParts.h"
#include "tests/forms/ControlChecks.h"
#include "tests/forms/DialogFixture.h"

namespace tallyhorn {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

class frmPreferencesTest : public DialogFixture {
protected:
    QWidget& Dialog() override { return *window_; }
    void Open(const std::string& entries) {
        parts_.Fill(entries);
        window_ = std::make_unique<frmPreferences>(parts_.All());
        ShowDialog();
    }
    void AccessKey(Qt::Key key) { Press(key, Qt::AltModifier); }
    static bool IsBusy() { return QApplication::overrideCursor() != nullptr; }

    PreferencesParts parts_;
    std::unique_ptr<frmPreferences> window_;
};

TEST_F(frmPreferencesTest, ShowsTheFile) {
    Open("SyslogUDPPort=514\r\nSeperator=\xB7\r\nSoundOn=1\r\nMessageViews=5\r\nDateTime=7\r\n");
    EXPECT_EQ(Text("txtSyslogUDPPort"), "514");
    EXPECT_EQ(Text("txtSeperator"), "\u00B7");
    for (const char* const name : {"chkSound", "chkShowTab0", "chkShowTab2", "optDateTime1"})
        EXPECT_TRUE(IsChecked(name)) << name;
    EXPECT_FALSE(IsChecked("chkShowTab1"));
    ExpectSoundControls(*window_);
    Open("");
    EXPECT_EQ(Text("txtSyslogUDPPort"), "0");
    EXPECT_TRUE(IsChecked("optDateTime0"));
}

TEST_F(frmPreferencesTest, AccessKeysLeadWhereTheCaptionsSay) {
    Open("");
    parts_.Boxes.Answer = false;
    EXPECT_EQ(Focus(), "txtSyslogUDPPort");
    const struct {
        Qt::Key Key;
        const char* Button;
    } buttons[] = {{Qt::Key_S, "chkSound"},    {Qt::Key_H, "chkShowTab0"},  {Qt::Key_W, "chkShowTab1"},
                   {Qt::Key_C, "chkShowTab2"}, {Qt::Key_D, "optDateTime1"}, {Qt::Key_M, "optDateTime0"}};
    for (const auto& button : buttons) {
        const bool before = IsChecked(button.Button);
        AccessKey(button.Key);
        EXPECT_EQ(Focus(), button.Button);
        // A button that its key clicks stays down for a moment.
        AWAIT(IsChecked(button.Button) != before);
    }
    AccessKey(Qt::Key_A);
    EXPECT_EQ(Focus(), "txtSeperator");
    AccessKey(Qt::Key_P);
    EXPECT_EQ(Focus(), "txtSyslogUDPPort");
    AccessKey(Qt::Key_R);
    AWAIT(parts_.Boxes.Shown.size() == 1);
    EXPECT_THAT(parts_.Log, IsEmpty());
}

TEST_F(frmPreferencesTest, SavesByMouse) {
    Open("SyslogUDPPort=514\r\n");
    Type("txtSyslogUDPPort", " 1514 ");
    for (const char* const name : {"chkSound", "chkShowTab0", "chkShowTab2", "optDateTime1"})
        Click(name);
    Type("txtSeperator", QString(QChar(0xB7)) + QChar(0x2192));
    bool busy = false;
    parts_.Events.Event = [&] {
        parts_.Log.emplace_back("events");
        busy = IsBusy();
    };
    Click("cmdOK");
    EXPECT_TRUE(busy);
    EXPECT_FALSE(IsBusy());
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(parts_.Log.front(), "events") << "the window goes before the work";
    EXPECT_THAT(parts_.Log, IsSupersetOf({"set up the endpoint", "separator \xB7?", "sound on", "show tab 0",
                                          "hide tab 1", "show tab 2", "date order 1"}));
    EXPECT_EQ(parts_.Bytes(),
              "[General]\r\nSyslogUDPPort= 1514 \r\nSeperator=\xB7?\r\nSoundOn=1\r\nMessageViews=5\r\n"
              "DateTime=1\r\n");
}

TEST_F(frmPreferencesTest, SavesByKeyboard) {
    Open("SyslogUDPPort=514\r\nSeperator=/\r\nMessageViews=7\r\nDateTime=1\r\n");
    // The port is marked: typing takes its place.
    QTest::keyClicks(window_->focusWidget(), "515");
    AccessKey(Qt::Key_W);
    AccessKey(Qt::Key_A);
    QTest::keyClicks(window_->focusWidget(), "-");
    AccessKey(Qt::Key_M);
    AWAIT(IsChecked("optDateTime0") && !IsChecked("chkShowTab1"));
    Press(Qt::Key_Return);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(
        parts_.Bytes(),
        "[General]\r\nSyslogUDPPort=515\r\nSeperator=-\r\nMessageViews=5\r\nDateTime=0\r\nSoundOn=0\r\n");
}

TEST_F(frmPreferencesTest, CancelWritesNothing) {
    const std::string entries = "SyslogUDPPort=514\r\nMessageViews=7\r\n";
    for (const char* const way : {"cmdCancel", "Escape", "title bar"}) {
        Open(entries);
        Type("txtSyslogUDPPort", "1514");
        Type("txtSeperator", "-");
        for (const char* const name :
             {"chkSound", "chkShowTab0", "chkShowTab1", "chkShowTab2", "optDateTime1"})
            Click(name);
        if (way == std::string("cmdCancel"))
            Click(way);
        else if (way == std::string("Escape"))
            Press(Qt::Key_Escape);
        else
            window_->close();
        EXPECT_FALSE(window_->isVisible()) << way;
        EXPECT_THAT(parts_.Log, IsEmpty()) << way;
        EXPECT_EQ(parts_.Bytes(), "[General]\r\n" + entries) << way;
    }
}

TEST_F(frmPreferencesTest, ARefusedPortIsTypedAnew) {
    Open("SyslogUDPPort=514\r\n");
    for (const char* const text : {"", "5 14"}) {
        Type("txtSyslogUDPPort", text);
        Click("cmdOK");
        EXPECT_TRUE(window_->isVisible()) << text;
        EXPECT_EQ(Focus(), "txtSyslogUDPPort") << text;
    }
    EXPECT_EQ(parts_.Boxes.Shown.size(), 2U);
    EXPECT_THAT(parts_.Log, IsEmpty());
    QTest::keyClicks(window_->focusWidget(), "514");
    Press(Qt::Key_Enter);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(parts_.Boxes.Shown.size(), 2U);
}

TEST_F(frmPreferencesTest, APortBeyond16BitsIsWrittenAndNothingElse) {
    Open("SyslogUDPPort=514\r\n");
    Type("txtSyslogUDPPort", "32768");
    Click("chkSound");
    Click("cmdOK");
    EXPECT_TRUE(window_->isVisible());
    EXPECT_FALSE(IsBusy());
    EXPECT_THAT(parts_.Boxes.Shown, IsEmpty());
    EXPECT_THAT(parts_.Log, ElementsAre("events", "SyslogUDPPort=32768"));
    Type("txtSyslogUDPPort", "32767");
    Click("cmdOK");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_THAT(parts_.Log, Contains("set up the endpoint"));
}

TEST_F(frmPreferencesTest, ResetKeepsTheDialogOpen) {
    Open("CPWidth=9000\r\nSyslogUDPPort=514\r\n");
    Type("txtSyslogUDPPort", "1514");
    parts_.Boxes.Answer = false;
    Click("cmdReset");
    EXPECT_THAT(parts_.Log, IsEmpty());
    parts_.Boxes.Answer = true;
    Click("cmdReset");
    EXPECT_THAT(parts_.Log, Contains("share out widths"));
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(Text("txtSyslogUDPPort"), "1514");
}

TEST_F(frmPreferencesTest, WhatHappensMeanwhileDoesNotMixIn) {
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
    EXPECT_THAT(parts_.Boxes.Shown, IsEmpty());
    EXPECT_EQ(
        parts_.Bytes(),
        "[General]\r\nSyslogUDPPort=514\r\nMessageViews=7\r\nSeperator=\r\nSoundOn=0\r\nDateTime=0\r\n");
}

TEST_F(frmPreferencesTest, PastedLineEndsMakeNoLinesInTheFile) {
    Open("SyslogUDPPort=514\r\n");
    for (const char* const text : {"-\r\nSoundOn=1", "\n", "-\rx"}) {
        QApplication::clipboard()->setText(QString::fromLatin1(text));
        auto* const box = Find<QLineEdit>("txtSeperator");
        QTest::mouseClick(box, Qt::LeftButton);
        QTest::keySequence(box, QKeySequence::Paste);
        EXPECT_EQ(box->text().toStdString(), "");
    }
}

}  // namespace
}  // namespace tallyhorn
