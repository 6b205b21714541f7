#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTextDocumentFragment>

#include "records/AnsiText.h"
#include "tests/forms/ConsoleFixture.h"
#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

using Hostile = std::pair<const char*, std::string>;

const Hostile Texts[] = {
    {"Tags", "<b>bold</b><img src='x'><a href=\"file:///etc\">y</a>"},
    {"FormatLettersAndShellText", "%s%n%1%2 {0} \\n `reboot`; $HOME & | > /tmp/x 'a' \"b\""},
    {"Option", "/l:\\\\host\\share\\x.evtx"},
    {"ControlCharacters", "a\x01\x07\x08\x1B[31m\x7F\x81z"},
    {"AccessKeys", "&File && &Yes"},
    {"RightToLeftMarks", "a\xE2\x80\xAEgpj.exe\xE2\x80\xAC\xFD\xFEz"},
    {"Formula", "=cmd|'/c calc'!A1"},
    {"SixtyThousandCharacters", std::string(60'000, 'x')},
};

/// A sender's text must never be interpreted, e.g. as markup or as an option: neither by a window nor by the
/// event viewer nor on the clipboard.
class HostileTextTest : public ConsoleFixture, public ::testing::WithParamInterface<Hostile> {
protected:
    /// Checks that no label interprets the text as markup.  A tool tip is markup, so that it wraps, but shows
    /// the text unchanged.
    void ExpectNoMarkup() {
        for (const QWidget* const widget : QApplication::allWidgets()) {
            if (const QString tip = widget->toolTip(); Qt::mightBeRichText(tip)) {
                EXPECT_EQ(QTextDocumentFragment::fromHtml(tip).toPlainText(), ToVisibleLine(upper_));
            }
            const auto* const label = qobject_cast<const QLabel*>(widget);
            EXPECT_TRUE(label == nullptr || label->textFormat() == Qt::PlainText ||
                        !Qt::mightBeRichText(label->text()));
        }
    }

    const std::string text_ = GetParam().second;
    const std::string name_ = text_.substr(0, 300);
    const std::string upper_ = UpperCase(name_);
};

TEST_P(HostileTextTest, StaysATextInEveryWindowAndForOtherPrograms) {
    StartListening();
    Send("Alarm (" + name_ + ") Event raised: System Log, 08/21/2008 2:05:09 PM, " + name_ + ", Error, " +
         name_ + ", 7, " + name_ + ", " + name_ + ", " + text_);
    Handle();
    ShowPage(1);
    MessageListView* const errors = SyslogList(0);
    ClickRow(errors, 0);
    for (const auto& [column, shown] : {std::pair(1, name_), {3, upper_}, {4, upper_}})
        EXPECT_EQ(errors->model()->index(0, column).data().toString(), ToVisibleLine(shown));
    Command("eventviewer");
    // A computer's name that looks like an option is not passed to the event viewer.
    std::vector<std::vector<std::string>> started;
    if (!upper_.starts_with('/'))
        started.push_back({"eventvwr", upper_});
    EXPECT_EQ(programs_.Started, started);
    Command("view");
    EXPECT_TRUE(Find<QPlainTextEdit>("txtMessage")->toPlainText().endsWith(ToVisibleLine(text_).trimmed()));
    ExpectNoMarkup();
    Click("cmdClipboard");
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains(ToQString("\r\nDescription: \r\n" + text_)) ||
                copied.contains(ToQString("Description: " + text_)))
        << copied.toStdString();
    InDialog([this](QWidget& dialog) {
        ExpectNoMarkup();
        EXPECT_EQ(FromQString(In<QLineEdit>(dialog, "txtSource")->text()).substr(0, 10), name_.substr(0, 10));
        dialog.close();
    });
    Click("cmdSuppress");

    ShowPage(2);
    EXPECT_EQ(Node({0}).data().toString(), ToVisibleLine(name_) + " ( 1 Event )");
    Tree()->setCurrentIndex(Node({0}));
    QTest::keyClick(Tree(), Qt::Key_Asterisk);
    InDialog([this](QWidget& dialog) {
        In(dialog, "chkFilterOn4")->click();
        EXPECT_EQ(In<QComboBox>(dialog, "cmbFilterText4")->currentText(), ToVisibleLine(upper_));
        ExpectNoMarkup();
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("filter");
    AwaitShown();
    EXPECT_EQ(errors->model()->rowCount(), 1) << "the filter compares the sender's bytes";
}

INSTANTIATE_TEST_SUITE_P(All, HostileTextTest, ::testing::ValuesIn(Texts),
                         [](const auto& one) { return std::string(one.param.first); });

}  // namespace
}  // namespace tallyhorn
