#include <QListWidget>
#include <QMenu>
#include <QTreeWidget>

#include "app/QtMessageBoxes.h"
#include "desktop/help/forms/HelpPageView.h"
#include "desktop/help/forms/OwnHelpViewer.h"
#include "tests/forms/ConsoleFixture.h"
#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

class HelpKeysTest : public ConsoleFixture {
protected:
    /// Presses F1 in the widget that has the focus.  Returns the number of the requested page, or 0.
    unsigned F1In(QWidget& window) {
        help_.Requests.clear();
        QWidget* const focus = window.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &window, Qt::Key_F1);
        return help_.Requests.size() == 1 ? help_.Requests[0].What.Context : 0;
    }
    /// Opens each dialog by its command and calls `check` with the dialog and the number of its help page.
    void ForEachDialog(const std::function<void(QWidget&, unsigned)>& check) {
        const std::tuple<const char*, const char*, HelpContext> dialogs[] = {
            {"mnuOptions_Preferences", "", HelpContext::Preferences},
            {"mnuEdit_Filter", "", HelpContext::ViewFilter},
            {"mnuEdit_DropFilters", "", HelpContext::FilterManager},
            {"mnuEdit_DropFilters", "cmdAdd", HelpContext::FilterEditor}};
        for (const auto& [command, button, context] : dialogs) {
            InDialog([&check, first = button, page = HelpNumber(context)](QWidget& dialog) {
                if (*first != '\0')
                    In(dialog, first)->click();
                check(dialog, page);
                dialog.close();
            });
            Command(command);
        }
    }
};

TEST_F(HelpKeysTest, F1OpensThePageOfTheWindowThatHasTheFocus) {
    WriteBytes(programFolder_ / "THListen.CHM", "");
    Start();
    Receive({"Disk fault"});
    EXPECT_EQ(F1In(Dialog()), HelpNumber(HelpContext::MainWindow));
    ShowPage(2);
    EXPECT_EQ(F1In(Dialog()), HelpNumber(HelpContext::Tree));
    EXPECT_EQ(help_.Requests[0].What.Owner, Dialog().winId());
    EXPECT_EQ(help_.Requests[0].What.File, programFolder_ / "THListen.CHM");
    ShowPage(0);
    ForEachDialog([this](QWidget& dialog, unsigned page) { EXPECT_EQ(F1In(dialog), page); });
    ClickRow(List(0), 0);
    Command("mnuFile_ViewMsg");
    EXPECT_EQ(F1In(*Find("frmMessage")), HelpNumber(HelpContext::Details));
    InDialog([this](QWidget& box) {
        EXPECT_EQ(F1In(box), HelpNumber(HelpContext::Troubles));
        box.close();
    });
    QtMessageBoxes().Warn("text");
    QMenu* const menu = Find<QMenu>("mnuFile");
    menu->popup(QPoint(10, 10));
    EXPECT_EQ(F1In(*menu), HelpNumber(HelpContext::MainWindow));
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(F1In(console_->PopUpMenu()), HelpNumber(HelpContext::NotificationArea));
    QTest::keyClick(&Dialog(), Qt::Key_F1, Qt::ShiftModifier);
    EXPECT_EQ(help_.Requests.size(), 1U);
}

TEST_F(HelpKeysTest, AMissingHelpFileIsReportedInAMessageBox) {
    for (const TemporaryFolder* const folder : {&folder_, &programFolder_})
        WriteBytes(*folder / "THListen.CHM", "");
    help_.Outcome = HelpOutcome::NoFile;
    mailslots_.ByName["TallyhornEngine"];  // the mailslot exists already: the start shows a message box
    boxes_.WhileAsked = [this] {
        QDialog box;
        box.setModal(true);
        box.show();
        if (help_.Requests.empty())
            QTest::keyClick(&Dialog(), Qt::Key_F1);
    };
    Start();
    ASSERT_EQ(boxes_.Shown.size(), 2U);
    EXPECT_EQ(help_.Requests[0].What.File, folder_ / "THListen.CHM") << "the user's own file is preferred";
    EXPECT_NE(boxes_.Shown[1].find("THListen.CHM could not be found"), std::string::npos);
}

/// Compares the captions in the windows with the text of the help.
class HelpTextTest : public HelpKeysTest {
protected:
    void SetUp() override {
        if (MakeSystemHelpViewer() != nullptr)
            GTEST_SKIP() << "this system reads help files itself";
        const auto book = HelpBook::Open(TALLYHORN_HELP);
        ASSERT_NE(book, nullptr);
        const HelpPageView view(*book, nullptr);
        for (const std::string& page : book->Pages())
            helpText_ += view.PlainText(page).simplified() + '\n';
    }
    void ExpectExplained(QString caption) {
        caption = WithoutAccessKey(caption).simplified();
        if (caption.endsWith(QLatin1Char(':')) && !helpText_.contains(caption))
            caption.chop(1);
        EXPECT_TRUE(caption.size() < 2 || helpText_.contains(caption)) << caption.toStdString();
        ++captions_;
    }
    void ExpectAllExplained(const QWidget& window) {
        ExpectExplained(window.windowTitle());
        for (const QObject* const object : window.findChildren<QObject*>()) {
            const bool isCount = object->objectName().startsWith(QStringLiteral("stbMain"));
            const bool isText = object->inherits("QAction") || object->inherits("QAbstractButton") ||
                                object->inherits("QLabel");
            if (isText && !isCount)
                ExpectExplained(object->property("text").toString());
            if (object->objectName().startsWith(QStringLiteral("cmd")))
                ExpectExplained(object->property("toolTip").toString());
            if (object->inherits("QGroupBox"))
                ExpectExplained(object->property("title").toString());
        }
    }
    QString helpText_;
    int captions_ = 0;
};

TEST_F(HelpTextTest, TheHelpContainsEveryCaption) {
    Start();
    Receive({"Disk fault"});
    ClickRow(List(0), 0);
    Command("mnuFile_ViewMsg");
    auto* const tabs = Find<QTabWidget>("tabMessageTypes");
    for (int page = 0; page < tabs->count(); ++page)
        ExpectExplained(tabs->tabText(page));
    ExpectAllExplained(Dialog());  // includes the detail window, which is its child
    Command("pause");
    ExpectAllExplained(Dialog());
    ForEachDialog([this](QWidget& dialog, unsigned /*page*/) { ExpectAllExplained(dialog); });
    for (const auto* const action : console_->PopUpMenu().actions())
        ExpectExplained(action->text());
    EXPECT_GT(captions_, 150);
}

/// Tests the console's own help window with the help file of this build.
class FrmHelpTest : public DialogFixture {
protected:
    void SetUp() override {
        if (MakeSystemHelpViewer() != nullptr)
            GTEST_SKIP() << "this system shows help files itself";
        Open(10);
    }
    QWidget& Dialog() override { return *window_; }
    void Open(unsigned context) {
        ASSERT_EQ(viewer_.OpenHtmlHelp({TALLYHORN_HELP, 15, context, 0}), HelpOutcome::Shown);
        for (QWidget* const window : QApplication::topLevelWidgets())
            if (window->objectName() == QStringLiteral("frmHelp"))
                window_ = window;
        ASSERT_NE(window_, nullptr);
        AWAIT(window_->isActiveWindow());
    }
    HelpPageView* View() { return Find<HelpPageView>("txtPage"); }
    std::string Page() { return View()->ShownPage(); }
    void ClickLink(const char* link) {
        emit View()->anchorClicked(View()->source().resolved(QUrl(QLatin1String(link))));
    }

    OwnHelpViewer viewer_;
    QPointer<QWidget> window_;
};

TEST_F(FrmHelpTest, LinksContentsAndKeysLeadToPages) {
    EXPECT_EQ(Page(), "main-window.html");
    EXPECT_GT(View()->document()->size().height(), 500);
    ClickLink("troubles.html#delete");
    const std::pair<Qt::Key, const char*> keys[] = {
        {Qt::Key_Left, "main-window.html"}, {Qt::Key_Right, "troubles.html"}, {Qt::Key_Home, "welcome.html"}};
    for (const auto& [key, page] : keys) {
        Press(key, Qt::AltModifier);
        EXPECT_EQ(Page(), page);
    }
    auto* const contents = Find<QTreeWidget>("tvwContents");
    EXPECT_EQ(contents->currentItem()->text(0), QStringLiteral("Welcome"));
    contents->setFocus();
    Press(Qt::Key_Down);
    EXPECT_EQ(Page(), "first-steps.html");
    for (const char* const elsewhere : {"http://example.org/", "file:///etc/passwd", "javascript:0"}) {
        ClickLink(elsewhere);
        EXPECT_EQ(Page(), "first-steps.html") << elsewhere;
    }
    Open(HelpNumber(HelpContext::Tree));
    EXPECT_EQ(Page(), "tree.html");
    const QRect screen = window_->screen()->availableGeometry();
    for (const bool onTheLeft : {true, false}) {
        Press(Qt::Key_Escape);
        AWAIT(window_ == nullptr);
        QWidget asking;
        asking.setGeometry(onTheLeft ? screen.left() : screen.right() - 99, screen.top(), 100, 100);
        asking.show();
        asking.activateWindow();
        AWAIT(asking.isActiveWindow());
        Open(HelpNumber(HelpContext::About));
        EXPECT_EQ(Page(), "about.html") << "the window was closed and opened again";
        EXPECT_FALSE(window_->geometry().intersects(asking.frameGeometry())) << "it opens beside the other";
        EXPECT_TRUE(screen.contains(window_->geometry()));
    }
}

TEST_F(FrmHelpTest, FindsTextInAllPages) {
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Focus(), "txtFind");
    Type("txtFind", QStringLiteral("sound.WAV"));
    auto* const found = Find<QListWidget>("lvwFound");
    ASSERT_EQ(found->count(), 4);
    std::vector<std::pair<std::string, int>> places;
    const auto press = [&](Qt::KeyboardModifiers modifiers) {
        Press(Qt::Key_F3, modifiers);
        const QTextCursor cursor = View()->textCursor();
        EXPECT_EQ(cursor.selectedText().toLower(), QStringLiteral("sound.wav"));
        places.emplace_back(Page(), cursor.selectionStart());
    };
    for (int i = 0; i < 30; ++i)
        press(Qt::NoModifier);
    EXPECT_EQ(std::map(places.begin(), places.end()).size(), 4U) << "all pages with the text";
    for (std::size_t i = 29; i-- > 0;) {
        press(Qt::ShiftModifier);
        EXPECT_EQ(places.back(), places[i]) << i;
    }
    const std::string last = Page();
    Type("txtFind", QStringLiteral("no such words"));
    Press(Qt::Key_Return);
    EXPECT_EQ(found->count(), 0);
    EXPECT_EQ(Page(), last);
}

TEST_F(FrmHelpTest, CanBeUsedBesideAModalDialog) {
    QDialog dialog;
    InDialog([this](QWidget& modal) {
        QCoreApplication::processEvents();
        ClickLink("tree.html");
        auto* const contents = Find<QTreeWidget>("tvwContents");
        const QPoint first = contents->visualItemRect(contents->topLevelItem(0)).center();
        // Clicks the window, because a modal dialog would not block an event that is sent to a widget.
        QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {},
                          contents->viewport()->mapTo(window_.data(), first));
        QCoreApplication::processEvents();
        EXPECT_EQ(Page(), "welcome.html");
        modal.close();
    });
    dialog.exec();
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(FrmHelpTest, LoadsNothingFromOtherFiles) {
    const TemporaryFolder folder;
    const QString picture = QString::fromStdString(folder / "outside.png");
    ASSERT_TRUE(QImage(40, 40, QImage::Format_RGB32).save(picture));
    for (const char* const before : {"", "file://", "../../../"}) {
        const QVariant taken =
            View()->document()->resource(QTextDocument::ImageResource, QUrl(QLatin1String(before) + picture));
        EXPECT_EQ(taken.value<QImage>().size(), QSize(1, 1)) << before;
    }
    const QUrl text(QStringLiteral("file:///etc/hostname"));
    EXPECT_EQ(View()->document()->resource(QTextDocument::StyleSheetResource, text).toString(), "");
}

TEST(OwnHelpViewer, RefusesOtherFiles) {
    const TemporaryFolder folder;
    OwnHelpViewer viewer;
    EXPECT_EQ(viewer.OpenHtmlHelp({folder / "none.CHM", 15, 10, 0}), HelpOutcome::NoFile);
    std::ofstream(folder / "bad.CHM") << "ITSF and no more";
    EXPECT_EQ(viewer.OpenHtmlHelp({folder / "bad.CHM", 15, 10, 0}), HelpOutcome::BadFile);
    EXPECT_EQ(viewer.OpenWinHelp({TALLYHORN_HELP, 1, 10, 0}), HelpOutcome::NoViewer);
}

}  // namespace
}  // namespace tallyhorn
