#include <QAbstractItemModelTester>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QTreeView>

#include "filters/forms/frmDropFilters.h"
#include "tests/forms/ControlChecks.h"
#include "tests/forms/DialogFixture.h"
#include "tests/support/Cases.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeMessageBoxes.h"
#include "tests/support/FileBytes.h"
#include "tests/support/FilterRecords.h"
#include "tests/support/Notifications.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

class frmDropFiltersTest : public DialogFixture {
protected:
    frmDropFiltersTest() { filters_.OpenFilterFile(); }

    QWidget& Dialog() override { return *dialog_; }
    void Make(const std::string& file) {
        WriteBytes(path_, file);
        dialog_ = std::make_unique<frmDropFilters>(filters_, boxes_, clock_);
    }
    void Manage(const std::string& file) {
        Make(file);
        dialog_->InitFormAsManager();
        ShowDialog();
    }

    QTreeView* List() { return Find<QTreeView>("lvwManageFilters"); }
    /// Returns the names in the list, with a star before the selected one.
    std::string Listed() {
        std::string names;
        for (int row = 0; row < List()->model()->rowCount(); ++row) {
            const QModelIndex index = List()->model()->index(row, 0);
            names += (List()->selectionModel()->isSelected(index) ? "*" : "") +
                     index.data().toString().toStdString() + " ";
        }
        return names;
    }
    void ClickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, modifiers,
                          List()->visualRect(List()->model()->index(row, 0)).center());
    }
    /// Returns whether the file has these bytes; a failed EXPECT_EQ of whole records would print kilobytes.
    bool FileIs(const std::string& bytes) { return ReadBytes(path_) == bytes; }

    void ExpectManage() { ExpectMode(true, "Manage Suppression Filters", "&Close"); }
    void ExpectFields() { ExpectMode(false, "Create/Edit A Suppression Filter", "&Cancel"); }
    void ExpectMode(bool manage, const char* title, const char* cancel) {
        EXPECT_TRUE(dialog_->isVisible());
        EXPECT_EQ(dialog_->windowTitle(), title);
        EXPECT_EQ(Find<QAbstractButton>("cmdCancel")->text(), cancel);
        EXPECT_TRUE(Find("fraFilterProps")->isVisible() && Find("txtEventID")->isEnabled() != manage);
        EXPECT_EQ(Find("fraManageFilters")->isVisible(), manage);
        for (const char* name : {"lblInstructions", "lblFilterName", "txtFilterName", "cmdOK"})
            EXPECT_TRUE(Find(name)->isVisible() != manage && Find(name)->isEnabled() != manage) << name;
        const bool anyListed = !Listed().empty();
        EXPECT_TRUE(!manage || Focus() == (anyListed ? "lvwManageFilters" : "cmdAdd")) << Focus();
        for (const char* name : {"lvwManageFilters", "cmdEdit", "cmdDelete"})
            EXPECT_EQ(Find(name)->isEnabled(), manage && anyListed) << name;
        EXPECT_EQ(List()->viewport()->backgroundRole(), anyListed ? QPalette::Base : QPalette::Button);
    }

    const std::string a_ = RecordBytes(FilterOn("A", "a"));
    const std::string b_ = RecordBytes(FilterOn("B", "b"));
    const std::string blank_ = RecordBytes(SuppressionFilter());

    TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_ / "SavedFilters.dat";
    SuppressionFilters filters_{path_};
    FakeMessageBoxes boxes_;
    FakeClock clock_;
    std::unique_ptr<frmDropFilters> dialog_;
};

TEST_F(frmDropFiltersTest, HasSoundControlsInBothModes) {
    Manage(a_);
    ExpectSoundControls(*dialog_);
    Click("cmdAdd");
    EXPECT_EQ(Focus(), "txtFilterName");
    ExpectSoundControls(*dialog_, "CP");
    Click("optFilterByDate0");
    ExpectSoundControls(*dialog_, "CP");
}

TEST_F(frmDropFiltersTest, AccessKeysActOnTheButtonsWhileTheListIsShown) {
    const auto press = [this](Qt::Key key) { Press(key, Qt::AltModifier); };
    Manage(a_ + b_);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_E}) {
        press(key);
        AWAIT(Find("txtFilterName")->isVisible());  // a key presses a button for a tenth of a second
        ExpectFields();
        // Each press of a key that two controls share moves the focus to the next of them.
        for (const char* const name : {"txtCategory", "cmdCancel"}) {
            press(Qt::Key_C);
            EXPECT_EQ(Focus(), name);
        }
        Press(Qt::Key_Escape);
        ExpectManage();
    }
    press(Qt::Key_D);
    AWAIT(Listed() == "*B ");
    press(Qt::Key_C);
    AWAIT(!dialog_->isVisible());
}

/// The properties of the selected filter are shown, but only Edit enables them.
TEST_F(frmDropFiltersTest, ShowsThePropertiesOfTheSelectedFilter) {
    SuppressionFilter full = FilterOn("full", std::string(30, 's'));
    full.Category = std::string(50, 'c');
    full.AccountName = std::string(49, 'u');
    full.UseDateRange = FilterTrue;
    // Dates that cannot be typed.
    full.BeginDate = -1e300;
    full.EndDate = 46348.75 + 0.4 / 86400;
    Manage(a_ + RecordBytes(full));
    const auto shown = [this] {
        return Text("txtSource") + "|" + std::to_string(Find("lblBeginsWithSource")->isVisible()) +
               std::to_string(Find("lblBeginsWithCategory")->isVisible()) +
               std::to_string(Find("lblBeginsWithUser")->isVisible()) +
               std::to_string(IsChecked("optFilterByDate0"));
    };
    EXPECT_EQ(shown(), "a|0000");
    Press(Qt::Key_Down);
    EXPECT_EQ(shown(), std::string(30, 's') + "|1101");
    EXPECT_FALSE(Find("dtBegin")->isEnabled());
    Click("cmdAdd");
    EXPECT_EQ(shown(), "|0000");
    EXPECT_EQ(Find<QDateTimeEdit>("dtBegin")->text(), Find<QDateTimeEdit>("dtEnd")->text());
    Type("txtSource", QString(40, 't'));
    EXPECT_EQ(shown(), std::string(30, 't') + "|1000") << "a box takes no more than its field";
    Press(Qt::Key_Escape);
    EXPECT_EQ(shown(), std::string(30, 's') + "|1101");
    Click("cmdEdit");
    EXPECT_TRUE(Find("dtBegin")->isEnabled());
    Type("txtFilterName", "new");
    Press(Qt::Key_Return);
    full.FilterName = "new";
    EXPECT_TRUE(FileIs(a_ + RecordBytes(full)));
    Click("cmdDelete");
    EXPECT_EQ(shown(), "a|0000");
    Click("cmdDelete");
    EXPECT_EQ(shown(), "|0000");
}

TEST_F(frmDropFiltersTest, AddsEditsAndDeletesByKeyboardAndMouse) {
    Manage("");
    ExpectManage();
    Press(Qt::Key_Space);  // the Add button has the focus
    ExpectFields();
    EXPECT_EQ(Focus(), "txtFilterName");
    QTest::keyClicks(dialog_->focusWidget(), "night");
    const auto texts = SplitPairs("txtSource=d|txtCategory=cat|txtUser=u|txtComputer=pc|txtEventID=0");
    for (const auto& [box, text] : texts)
        Type(box, QString::fromStdString(text));
    Click("chkType1");
    Click("chkType4");
    Press(Qt::Key_Return);
    ExpectManage();
    SuppressionFilter filter = FilterOn("night", "d");
    filter.Category = "cat";
    filter.AccountName = "u";
    filter.Computer = "pc";
    filter.EventID = 0;
    filter.EventTypes = FilterWarning | FilterSuccessAudit;
    EXPECT_TRUE(FileIs(RecordBytes(filter)));
    EXPECT_EQ(SuppressedSources(filters_), "") << "no effect until the dialog is closed";

    // Edits the filter twice; each time, the boxes must show what was saved before.
    for (const char* const name : {"day", "night"}) {
        Click("cmdEdit");
        ExpectFields();
        EXPECT_EQ(Text("txtSource") + Text("txtCategory") + Text("txtUser") + Text("txtComputer"), "dcatupc");
        EXPECT_EQ(Text("txtEventID"), filter.EventID == 0 ? "0" : "");
        EXPECT_EQ(IsChecked("chkType4"), (filter.EventTypes & FilterSuccessAudit) != 0);
        EXPECT_TRUE(IsChecked("chkType1") && !IsChecked("chkType0"));
        QTest::keyClicks(dialog_->focusWidget(), name);  // replaces the name, which is selected
        Type("txtEventID", "");
        Click("chkType4");
        Click("cmdOK");
        ExpectManage();
        filter.FilterName = name;
        filter.EventID = AnyEventID;
        filter.EventTypes ^= FilterSuccessAudit;
        EXPECT_TRUE(FileIs(RecordBytes(filter))) << name;
        EXPECT_EQ(Listed(), "*" + std::string(name) + " ");
    }

    Click("cmdDelete");
    ExpectManage();
    EXPECT_TRUE(FileIs(blank_));
    Click("cmdAdd");
    for (const auto& [box, text] : texts)
        EXPECT_EQ(Text(box), "") << box;
    EXPECT_FALSE(IsChecked("chkType1"));
}

/// DropFilterEditor decides what is refused; the form keeps what was typed and sets the focus.
TEST_F(frmDropFiltersTest, RefusesAndKeepsWhatWasTyped) {
    Manage(a_);
    Click("cmdAdd");
    const std::tuple<const char*, const char*, std::size_t, const char*> cases[] = {
        {"", "1", 1, "txtFilterName"},
        {"a", "1", 1, "txtFilterName"},
        {"1234567890123456789012345678901", "x", 1, "cmdOK"},
        {"new", "2147483648", 0, "txtEventID"}};
    for (const auto& [name, eventId, boxes, focus] : cases) {
        boxes_.Shown.clear();
        Type("txtFilterName", name);
        Type("txtEventID", eventId);
        Find("cmdOK")->setFocus();
        Press(Qt::Key_Return);
        EXPECT_EQ(boxes_.Shown.size(), boxes) << name;
        ExpectFields();
        EXPECT_EQ(Focus(), focus) << name;
        EXPECT_EQ(Text("txtFilterName") + Text("txtEventID"), std::string(name) + eventId);
    }
    Click("cmdCancel");
    ExpectManage();
    EXPECT_TRUE(FileIs(a_));
}

TEST_F(frmDropFiltersTest, QuickAddProposesAFilterAndReturnsToTheManager) {
    const AlarmRecord alarm = RecordOf({.Type = "Information"});
    SuppressionFilter filter = FilterOn("7_Disk", "Disk");
    filter.EventID = 7;
    filter.EventTypes = FilterInformation;
    for (const bool saved : {false, true}) {
        Make(a_);
        dialog_->InitFormAsQuickAdd(alarm);
        ShowDialog();
        ExpectFields();
        EXPECT_EQ(Focus(), "txtFilterName");
        Press(saved ? Qt::Key_Return : Qt::Key_Escape);
        ExpectManage();
        EXPECT_TRUE(FileIs(saved ? a_ + RecordBytes(filter) : a_));
        EXPECT_EQ(Listed(), saved ? "A *7_Disk " : "*A ");
        Press(Qt::Key_Escape);
        EXPECT_EQ(filters_.IsSuppressed(alarm), saved);
    }
}

TEST_F(frmDropFiltersTest, LoadsTheFiltersHoweverItIsClosed) {
    const std::function<void()> ways[] = {[this] { Click("cmdEdit"), dialog_->close(); },
                                          [this] { Click("cmdCancel"); }, [this] { Press(Qt::Key_Escape); },
                                          [this] { Press(Qt::Key_Return); },
                                          [this] { dialog_->InitForm(), Click("cmdCancel"); }};
    for (const auto& close : ways) {
        SCOPED_TRACE(&close - ways);
        Manage(b_);
        // Replaces the file, so that the new filters are found only if the file is opened again.  Windows
        // does not let an open file be replaced; there only its contents change.
        WriteBytes(folder_ / "other", blank_ + a_);
        std::error_code refused;
        std::filesystem::rename(folder_ / "other", path_, refused);
        if (refused)
            WriteBytes(path_, blank_ + a_);
        close();
        EXPECT_TRUE(dialog_->result() == QDialog::Rejected && !dialog_->isVisible());
        EXPECT_EQ(SuppressedSources(filters_), "a");
        WriteBytes(path_, "");
        filters_.LoadSuppressionFilters();
    }
}

TEST_F(frmDropFiltersTest, DatesAreEnabledByYesAndSavedToTheSecond) {
    clock_.Local = MakeAlarmDate({2026, 9, 3, 14, 5, 9})->Seconds;
    Manage("");
    auto* const begin = Find<QDateTimeEdit>("dtBegin");
    auto* const end = Find<QDateTimeEdit>("dtEnd");
    EXPECT_EQ(begin->text() + end->text(), "September 03 2026 02:05:09 PMSeptember 03 2026 02:05:09 PM");
    Click("cmdAdd");
    Type("txtFilterName", "dated");
    Find("optFilterByDate1")->setFocus();
    for (const bool enabled : {true, false, true}) {
        Press(enabled ? Qt::Key_Up : Qt::Key_Down);
        for (const char* name : {"dtBegin", "dtEnd", "lblBeginDate", "lblEndDate"})
            EXPECT_EQ(Find(name)->isEnabled(), enabled) << name;
    }
    begin->setFocus();
    QTest::keyClick(begin, Qt::Key_Down);  // sets the date back by a month
    end->setDateTime(QDateTime(QDate(2026, 9, 28), QTime(2, 5, 9), Qt::UTC));
    Press(Qt::Key_Return);
    ExpectManage();
    SuppressionFilter dated = FilterOn("dated", "");
    dated.UseDateRange = FilterTrue;
    dated.BeginDate = DaysFromAlarmDate(*MakeAlarmDate({2026, 8, 3, 14, 5, 9}));
    dated.EndDate = DaysFromAlarmDate(*MakeAlarmDate({2026, 9, 28, 2, 5, 9}));
    EXPECT_TRUE(FileIs(RecordBytes(dated)));
    Click("cmdAdd");
    EXPECT_FALSE(begin->isEnabled()) << "a new filter starts without a date range";
    Press(Qt::Key_Escape);
    Click("cmdEdit");
    EXPECT_TRUE(begin->isEnabled());
    EXPECT_EQ(begin->text() + end->text(), "August 03 2026 02:05:09 PMSeptember 28 2026 02:05:09 AM");
}

TEST_F(frmDropFiltersTest, SortsByItsHeaderAndAlwaysSelectsOneFilter) {
    const std::string c = RecordBytes(FilterOn("c", ""));
    Manage(b_ + c + blank_ + a_);
    const QAbstractItemModelTester tester(List()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QWidget* const header = List()->header()->viewport();
    EXPECT_EQ(List()->model()->headerData(0, Qt::Horizontal).toString(), "Suppression Filter Name");
    EXPECT_EQ(Listed(), "*B c A ");
    QTest::mouseClick(header, Qt::LeftButton);
    EXPECT_EQ(Listed(), "A *B c ");
    QTest::keyClick(List(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(Listed(), "c *B A ");
    ClickRow(2);
    ClickRow(2, Qt::ControlModifier);
    EXPECT_EQ(Listed(), "c B *A ") << "a click with Ctrl does not unselect it";
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(5, List()->viewport()->height() - 2));
    EXPECT_EQ(Listed(), "c B *A ") << "a click below the rows does not unselect it";
    Press(Qt::Key_Up);
    Click("cmdDelete");
    EXPECT_EQ(Listed(), "c *A ");
    EXPECT_TRUE(FileIs(blank_ + c + blank_ + a_));
    Click("cmdEdit");
    Type("txtFilterName", "d");
    Press(Qt::Key_Return);
    EXPECT_EQ(Listed(), "*d c ");
}

}  // namespace
}  // namespace tallyhorn
