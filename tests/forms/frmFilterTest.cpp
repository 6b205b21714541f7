#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>

#include "filters/forms/frmFilter.h"
#include "tests/forms/ConsoleFixture.h"
#include "tests/forms/ControlChecks.h"

namespace tallyhorn {
namespace {

constexpr const char* Hostile = "<b>a</b> & \"&&x\"\t\r\n%s\x01\xFF";

class frmFilterTest : public DialogFixture {
protected:
    QWidget& Dialog() override { return *dialog_; }
    void SetUp() override { display_.Page = MessagePage::Syslog; }

    void Keep(const std::string& alarm, const std::string& computer) {
        AlarmRecord record;
        record.AlarmName = alarm;
        record.Computer = computer;
        record.TypeOfEvent = "Error";
        received_.KeepSyslogMessage(record, true);
    }
    void Open() {
        dialog_ = std::make_unique<frmFilter>(filter_, boxes_);
        ShowDialog();
    }
    QComboBox* Combo(int number) { return Find<QComboBox>("cmbFilterText" + std::to_string(number)); }
    std::vector<std::string> Shown() {
        std::vector<std::string> computers;
        for (std::size_t i = 0; i < received_.List(3).Size(); ++i)
            computers.push_back(received_.List(3).CellText(i, MessageColumn::Computer));
        return computers;
    }

    FakeClock clock_;
    FakePendingEvents events_;
    FakeDisplay display_;
    FakeMessageBoxes boxes_;
    AlarmRecord alarm_;
    TimeSlices slices_{clock_, events_};
    ReceivedMessages received_{display_, slices_};
    ViewFilter filter_{received_, display_, slices_, clock_, alarm_};
    std::unique_ptr<frmFilter> dialog_;
};

TEST_F(frmFilterTest, OffersSortedTextsOnce) {
    for (const char* const computer : {"b", "A", "b", "a", ""})
        Keep("Full", computer);
    Open();
    std::string texts;
    for (int row = 0; row < Combo(4)->count(); ++row)
        texts += Combo(4)->itemText(row).toStdString() + "|";
    EXPECT_EQ(texts, "|A|a|b|");
    EXPECT_EQ(Combo(1)->count(), 1);
    EXPECT_EQ(Combo(4)->currentText(), "") << "nothing is chosen yet";
    EXPECT_FALSE(Combo(4)->isEnabled());
    const QAbstractItemModelTester tester(Combo(4)->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
}

TEST_F(frmFilterTest, NothingCheckedIsRefused) {
    Keep("Full", "A");
    Open();
    Click("cmdApply");
    Press(Qt::Key_Return);
    EXPECT_EQ(boxes_.Shown, (std::vector<std::string>{"You must select at least one item to filter by.",
                                                      "You must select at least one item to filter by."}));
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_FALSE(filter_.InForce());
    EXPECT_EQ(Shown(), std::vector<std::string>{"A"});
}

TEST_F(frmFilterTest, ACheckOpensItsComboBox) {
    for (const char* const computer : {"A", "B", "C"})
        Keep("Full", computer);
    Open();
    Click("chkFilterOn4");
    EXPECT_EQ(Focus(), "cmbFilterText4");
    EXPECT_EQ(Combo(4)->currentText(), "A");
    Press(Qt::Key_Down);
    Click("chkFilterOn4");
    EXPECT_FALSE(Combo(4)->isEnabled());
    Find("chkFilterOn4")->setFocus();
    Press(Qt::Key_Space);
    EXPECT_EQ(Focus(), "cmbFilterText4") << "by keyboard too";
    EXPECT_EQ(Combo(4)->currentText(), "B") << "what was chosen stays";
    Press(Qt::Key_C);
    EXPECT_EQ(Combo(4)->currentText(), "C");
    Press(Qt::Key_Return);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);
    EXPECT_EQ(Shown(), std::vector<std::string>{"C"});
    EXPECT_EQ(filter_.Criterion(3), "C");
    EXPECT_EQ(filter_.Criterion(0), "") << "an unchecked field is not filtered by";
    EXPECT_EQ(display_.FilterShown, true);
}

TEST_F(frmFilterTest, CancelChangesNothing) {
    Keep("Full", "A");
    const std::function<void()> ways[] = {[&] { Click("cmdCancel"); }, [&] { Press(Qt::Key_Escape); },
                                          [&] { dialog_->close(); }};
    for (const auto& cancel : ways) {
        Open();
        Click("chkFilterOn4");
        cancel();
        EXPECT_FALSE(dialog_->isVisible());
        EXPECT_EQ(dialog_->result(), QDialog::Rejected);
        EXPECT_FALSE(filter_.InForce());
        EXPECT_FALSE(display_.FilterShown.has_value());
    }
}

TEST_F(frmFilterTest, AccessKeysLeadToTheCheckBoxes) {
    Keep("Full", "A");
    Open();
    const struct {
        Qt::Key Key;
        const char* Focus;
    } keys[] = {{Qt::Key_L, "chkFilterOn2"},
                {Qt::Key_O, "chkFilterOn3"},
                {Qt::Key_C, "chkFilterOn4"},
                {Qt::Key_A, "chkFilterOn1"}};
    for (const auto& [key, focus] : keys) {
        Press(key, Qt::AltModifier);
        EXPECT_EQ(Focus(), focus);
    }
    Press(Qt::Key_Space);
    ASSERT_EQ(Focus(), "cmbFilterText1");
    Press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(Focus(), "chkFilterOn1") << "also out of the same frame";
    EXPECT_TRUE(IsChecked("chkFilterOn1")) << "the key moves the focus and no more";
    ExpectSoundControls(*dialog_);
}

TEST_F(frmFilterTest, HostileTextsAreShownHarmlesslyAndComparedAsTheyAre) {
    const char* const hostile = "<b>a</b> & \"&&x\"\t\r\n%s\x01\xFF";
    const std::string endless(60'000, 'W');
    Keep(hostile, "A");
    Keep(endless, "B");
    Keep("\x01middle", "C");
    Keep("\x02middle", "D");
    Open();
    EXPECT_LT(dialog_->width(), 900) << "no text widens the dialog";
    Click("chkFilterOn1");
    Combo(1)->showPopup();
    QAbstractItemView* const view = Combo(1)->view();
    AWAIT(view->isVisible());
    EXPECT_LT(view->window()->width(), 900);
    EXPECT_LE(view->visualRect(view->model()->index(0, 0)).width(), view->viewport()->width());
    Combo(1)->hidePopup();
    const int row =
        Combo(1)->findText(QString::fromUtf8("<b>a</b> & \"&&x\"\u00B7\u00B7\u00B7%s\u00B7\u00FF"));
    ASSERT_GE(row, 0);
    EXPECT_FALSE(Combo(1)->itemData(row, Qt::ToolTipRole).toString().contains("<b>"));
    // Two texts look the same on the screen; the one that is chosen is the one that counts.
    const int middle = Combo(1)->findText(QString::fromUtf8("\u00B7middle"));
    ASSERT_EQ(Combo(1)->itemText(middle + 1), Combo(1)->itemText(middle));
    Combo(1)->setCurrentIndex(middle + 1);
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), std::vector<std::string>{"D"});
    filter_.RemoveViewFilter();
    Open();
    Click("chkFilterOn1");
    Combo(1)->setCurrentIndex(row);
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), std::vector<std::string>{"A"});
    EXPECT_EQ(filter_.Criterion(0), hostile);
}

TEST_F(frmFilterTest, FiftyThousandTextsCostNothingUntilLookedAt) {
    for (int i = 0; i < 50'000; ++i)
        Keep("Full", "PC-" + std::to_string(i));
    Open();
    ASSERT_EQ(Combo(4)->count(), 50'000);
    // Widths are those of a dialog over nothing.
    frmFilter empty(filter_, boxes_);
    EXPECT_EQ(empty.sizeHint(), dialog_->sizeHint());
    Click("chkFilterOn4");
    Combo(4)->showPopup();
    QAbstractItemView* const view = Combo(4)->view();
    AWAIT(view->isVisible());
    const int rowHeight = view->visualRect(view->model()->index(0, 0)).height();
    EXPECT_LE(view->viewport()->height(), 17 * rowHeight) << "a list of some rows, not as high as the screen";
    QTest::keyClick(view, Qt::Key_End);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_EQ(Combo(4)->currentText(), "PC-9999");
    AWAIT(!view->isVisible());
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), std::vector<std::string>{"PC-9999"});
}

TEST_F(frmFilterTest, TakesNoSecondOrderWhileItWorks) {
    for (int i = 0; i < 3000; ++i)
        Keep("Full", "PC");
    Open();
    Click("chkFilterOn4");
    clock_.PerLook = std::chrono::milliseconds(20);
    int runs = 0;
    events_.Event = [&] {
        ++runs;
        Click("cmdApply");
        QTest::keyClick(dialog_.get(), Qt::Key_Return);
        QTest::keyClick(dialog_.get(), Qt::Key_Escape);
        EXPECT_EQ(display_.WorkUnderWay, 1);
        EXPECT_TRUE(dialog_->isVisible());
    };
    Press(Qt::Key_Return);
    EXPECT_GT(runs, 2);
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);
    EXPECT_EQ(Shown().size(), 3000U);
}

/// The whole way in the console, with the lists of its window.
class FilterConsoleTest : public ConsoleFixture {
protected:
    static void Choose(QWidget& dialog) {
        auto* const box = dialog.findChild<QCheckBox*>(QStringLiteral("chkFilterOn1"));
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
    }
    int Rows(int element) {
        AwaitShown();
        return List(element)->model()->rowCount();
    }
};

TEST_F(FilterConsoleTest, GoesOnAndComesOffWithArrivalsBetween) {
    Start();
    for (const char* const name : {"A", "B", "B"})
        Arrive(name, "Error");
    Poll();
    ASSERT_EQ(Rows(0), 3);
    List(0)->setFocus();
    InDialog([&](QWidget& dialog) {
        Arrive("B", "Error");
        Poll();
        Choose(dialog);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("filter");
    EXPECT_EQ(Rows(0), 1) << "what came while the dialog stood open is filtered too";
    EXPECT_EQ(Panel(1), "4 NetBIOS Message(s)");
    EXPECT_EQ(console_->Window().focusWidget(), List(0));
    Arrive("a", "Warning");
    Arrive("C", "Information");
    Poll();
    EXPECT_EQ(Rows(0) + Rows(1) + Rows(2), 2);
    EXPECT_FALSE(List(2)->isEnabled());
    QTest::keyClick(List(0), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(List(0), Qt::Key_Delete);
    EXPECT_EQ(boxes_.Shown, std::vector<std::string>{"You cannot delete messages while a filter is active."});
    Command("filter");
    EXPECT_EQ(Rows(0), 4);
    EXPECT_EQ(Rows(1), 1);
    EXPECT_EQ(Rows(2), 1);
    EXPECT_TRUE(List(2)->isEnabled());
    EXPECT_EQ(console_->Window().focusWidget(), List(0));
}

TEST_F(FilterConsoleTest, ComesOffWhileItsPageIsHidden) {
    Start();
    Arrive("A", "Error");
    Arrive("B", "Error");
    Poll();
    InDialog([](QWidget& dialog) {
        Choose(dialog);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Command("filter");
    EXPECT_EQ(Rows(0), 1);
    for (const MessagePage page : {MessagePage::NetBios, MessagePage::Syslog, MessagePage::Consolidated})
        console_->Window().ShowPage(page, false);
    Command("filter");
    console_->Window().ShowPage(MessagePage::NetBios, true);
    ShowPage(0);
    EXPECT_EQ(Rows(0), 2);
}

TEST_F(FilterConsoleTest, TheEndOfTheSessionClosesTheDialog) {
    Start();
    Arrive("A", "Error");
    Poll();
    InDialog([this](QWidget& dialog) {
        Choose(dialog);
        console_->End();
    });
    Command("filter");
    AWAIT(console_->HasEnded());
}

}  // namespace
}  // namespace tallyhorn
