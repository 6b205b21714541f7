#include <QAbstractItemModelTester>
#include <QComboBox>

#include "filters/forms/frmFilter.h"
#include "tests/forms/ConsoleFixture.h"
#include "tests/forms/ControlChecks.h"
#include "tests/support/MessagesInMemory.h"

namespace tallyhorn {
namespace {

class frmFilterTest : public DialogFixture, protected MessagesInMemory {
protected:
    QWidget& Dialog() override { return *dialog_; }
    void SetUp() override { Display.Page = MessagePage::Syslog; }

    void Keep(const std::string& alarm, const std::string& computer) {
        KeepSyslog(RecordOf({.Name = alarm, .Computer = computer}));
    }
    void Open() {
        dialog_ = std::make_unique<frmFilter>(filter_, Boxes);
        ShowDialog();
    }
    QComboBox* Combo(int number) { return Find<QComboBox>("cmbFilterText" + std::to_string(number)); }
    /// Returns the computers in the list of errors.
    std::string Shown() {
        std::string computers;
        for (std::size_t i = 0; i < Received.List(3).Size(); ++i)
            computers += Received.List(3).CellText(i, MessageColumn::Computer) + " ";
        return computers;
    }

    ViewFilter filter_{Context};
    std::unique_ptr<frmFilter> dialog_;
};

TEST_F(frmFilterTest, ACheckBoxEnablesItsComboBox) {
    Open();
    Click("chkFilterOn1");
    Click("cmdApply");
    EXPECT_TRUE(filter_.InForce() && filter_.PassesViewFilter(RecordOf({}))) << "there was no text to choose";
    filter_.RemoveViewFilter();
    for (const char* const computer : {"0", "A", "B", "C", "B"})
        Keep("Full", computer);
    Display.Selected[3] = 1;
    Open();
    const QAbstractItemModelTester tester(Combo(4)->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(Combo(4)->count(), 4);
    EXPECT_EQ(Combo(4)->currentText(), "");
    Click("chkFilterOn4");
    EXPECT_EQ(Focus(), "cmbFilterText4");
    EXPECT_EQ(Combo(4)->currentText(), "A") << "the text of the selected row";
    Press(Qt::Key_Down);
    Click("chkFilterOn4");
    EXPECT_FALSE(Combo(4)->isEnabled());
    for (const bool byKey : {false, true}) {
        byKey ? Press(Qt::Key_Return) : Click("cmdApply");
        EXPECT_EQ(Boxes.Shown.back(), "You must select at least one item to filter by.");
        EXPECT_TRUE(dialog_->isVisible() && !filter_.InForce());
    }
    Find("chkFilterOn4")->setFocus();
    Press(Qt::Key_Space);
    EXPECT_EQ(Focus(), "cmbFilterText4") << "the key works like a click";
    EXPECT_EQ(Combo(4)->currentText(), "B") << "the choice is kept";
    Press(Qt::Key_C);
    Click("chkFilterOn1");
    Click("chkFilterOn1");
    Press(Qt::Key_Return);
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);
    EXPECT_EQ(Shown(), "C ");
    EXPECT_TRUE(filter_.PassesViewFilter(RecordOf({.Name = "any", .Computer = "c"})))
        << "a field that is unchecked again does not filter";
    EXPECT_FALSE(filter_.PassesViewFilter(RecordOf({.Computer = "B"})));
}

TEST_F(frmFilterTest, AccessKeysMoveTheFocusToTheCheckBoxesAndCancelChangesNothing) {
    Keep("Full", "A");
    for (const bool byKey : {true, false}) {
        Open();
        Press(Qt::Key_A, Qt::AltModifier);
        Press(Qt::Key_Space);
        ASSERT_EQ(Focus(), "cmbFilterText1");
        Press(Qt::Key_A, Qt::AltModifier);
        EXPECT_EQ(Focus(), "chkFilterOn1") << "the key works in the same frame too";
        EXPECT_TRUE(IsChecked("chkFilterOn1")) << "the key does not press the box";
        ExpectSoundControls(*dialog_);
        byKey ? Press(Qt::Key_Escape) : Click("cmdCancel");
        EXPECT_FALSE(dialog_->isVisible() || filter_.InForce());
        EXPECT_EQ(dialog_->result(), QDialog::Rejected);
    }
}

TEST_F(frmFilterTest, ManyLongAndSimilarTextsCanBeChosen) {
    Keep(std::string(60'000, 'W'), "A");
    Keep("\x01middle", "B");
    Keep("\x02middle", "C");
    for (int i = 0; i < 1000; ++i)
        Keep("other " + std::to_string(i), "D");
    Open();
    EXPECT_LT(dialog_->width(), 900) << "no text widens the dialog";
    Click("chkFilterOn1");
    Combo(1)->showPopup();
    QAbstractItemView* const view = Combo(1)->view();
    AWAIT(view->isVisible());
    EXPECT_LT(view->window()->width(), 900);
    const QRect row = view->visualRect(view->model()->index(0, 0));
    EXPECT_LE(row.width(), view->viewport()->width());
    EXPECT_LE(view->viewport()->height(), 17 * row.height()) << "the popup is not as high as the screen";
    Combo(1)->hidePopup();
    const int middle = Combo(1)->findText(QString::fromUtf8("\u00B7middle"));
    ASSERT_EQ(Combo(1)->itemText(middle + 1), Combo(1)->itemText(middle));
    Combo(1)->setCurrentIndex(middle + 1);
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), "C ");
}

TEST_F(frmFilterTest, TakesNoInputWhileItApplies) {
    for (int i = 0; i < 3000; ++i)
        Keep("Full", "PC");
    Open();
    Click("chkFilterOn4");
    Time.PerLook = std::chrono::milliseconds(20);
    Events.Event = [&] {
        Click("cmdApply");
        QTest::keyClick(dialog_.get(), Qt::Key_Return);
        QTest::keyClick(dialog_.get(), Qt::Key_Escape);
        EXPECT_EQ(Display.WorkUnderWay, 1);
        EXPECT_TRUE(dialog_->isVisible());
    };
    Press(Qt::Key_Return);
    EXPECT_GT(Events.Runs, 2);
    EXPECT_EQ(dialog_->result(), QDialog::Accepted);
    EXPECT_EQ(Received.List(3).Size(), 3000U);
}

/// Tests the view filter in the whole console.
class FilterConsoleTest : public ConsoleFixture {
protected:
    /// Opens the dialog, calls `before`, and applies a filter with the first alarm name.
    void Filter(const std::function<void()>& before) {
        InDialog([=](QWidget& dialog) {
            before();
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        Command("filter");
    }
    std::string Captions() {
        const auto* const button = Find<QAction>("filter");
        return (button->isChecked() ? "pressed, " : "") + button->toolTip().toStdString() + ", " +
               Find<QAction>("mnuEdit_Filter")->text().toStdString();
    }
    /// Returns the numbers of rows in the NetBIOS lists.
    std::string Rows() {
        AwaitShown();
        std::string rows;
        for (int element = 0; element < 3; ++element)
            rows += std::to_string(List(element)->model()->rowCount()) + " ";
        return rows;
    }
};

TEST_F(FilterConsoleTest, AppliesToArrivalsUntilItIsRemoved) {
    Start();
    Receive({"A", "B", "B"});
    InDialog([](QWidget& dialog) { dialog.close(); });
    Command("filter");
    EXPECT_EQ(Captions(), "Apply Filter, &Apply a Filter to Received Messages");
    List(0)->setFocus();
    Filter([this] {
        Arrive("B", "Error");
        Poll();
    });
    EXPECT_EQ(Rows(), "1 0 0 ") << "what arrived in the meantime is filtered too";
    EXPECT_EQ(Captions(), "pressed, Remove Filter, &Remove Filter");
    EXPECT_EQ(Panel(1), "4 NetBIOS Message(s)");
    EXPECT_EQ(console_->Window().focusWidget(), List(0));
    Receive({"a"}, "Warning");
    Receive({"C"}, "Information");
    EXPECT_EQ(Rows(), "1 1 0 ");
    EXPECT_FALSE(List(2)->isEnabled());
    QTest::keyClick(List(0), Qt::Key_Delete);
    EXPECT_EQ(boxes_.Shown, std::vector<std::string>{"You cannot delete messages while a filter is active."});
    Command("mnuEdit_Filter");
    EXPECT_EQ(Captions(), "Apply Filter, &Apply a Filter to Received Alarms");
    EXPECT_EQ(Rows(), "4 1 1 ");
    EXPECT_TRUE(List(2)->isEnabled());
    EXPECT_EQ(console_->Window().focusWidget(), List(0));
}

TEST_F(FilterConsoleTest, IsRemovedWhileItsPageIsHidden) {
    Start();
    Receive({"A", "B"});
    Filter([] {});
    EXPECT_EQ(Rows(), "1 0 0 ");
    for (const MessagePage page : {MessagePage::NetBios, MessagePage::Syslog, MessagePage::Consolidated})
        console_->Window().ShowPage(page, false);
    Command("filter");
    console_->Window().ShowPage(MessagePage::NetBios, true);
    ShowPage(0);
    EXPECT_EQ(Rows(), "2 0 0 ");
}

}  // namespace
}  // namespace tallyhorn
