#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include "app/QtSaveDialog.h"
#include "tests/forms/DialogFixture.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "views/forms/frmServer.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;
using Answer = std::optional<fs::path>;

class QtSaveDialogTest : public DialogFixture {
protected:
    QWidget& Dialog() override { return owner_; }
    /// Shows the dialog and calls `act` once it is open.
    Answer Ask(const fs::path& proposal, const std::function<void(QFileDialog&)>& act) {
        InDialog<QFileDialog>(act);
        Answer answer = dialog_.AskFile(proposal, "Text files (*.txt)|*.txt");
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        return answer;
    }
    static QLineEdit* NameBox(QFileDialog& dialog) {
        return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    }

    TemporaryFolder folder_;
    const fs::path proposal_ = folder_.Path() / "Received_Syslog_Messages_25-Dec-2008.txt";
    QWidget owner_;
    QtSaveDialog dialog_;
};

TEST_F(QtSaveDialogTest, ProposesFolderNameAndFileType) {
    dialog_.SetOwner(&owner_);
    fs::create_directory(folder_.Path() / u"\u00C4rger");
    const fs::path proposal = folder_.Path() / u"\u00C4rger" / u"\u00F6.txt";
    const Answer answer = Ask(proposal, [this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &owner_);
        EXPECT_EQ(dialog.nameFilters(), QStringList(QStringLiteral("Text files (*.txt)")));
        QTest::keyClick(NameBox(dialog), Qt::Key_Return);
    });
    EXPECT_EQ(answer, proposal);
}

TEST_F(QtSaveDialogTest, ReturnsTheTypedNameWithItsExtension) {
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"mine.csv", u"mine.csv"},
        {u"\u00DCbersicht \u2013 \u65E5\u672C", u"\u00DCbersicht \u2013 \u65E5\u672C.txt"}};
    for (const auto& [typed, given] : cases) {
        // QTest can type ASCII only.
        const Answer answer = Ask(proposal_, [name = QString::fromUtf16(typed)](QFileDialog& dialog) {
            NameBox(dialog)->setText(name);
            QTest::keyClick(NameBox(dialog), Qt::Key_Return);
        });
        EXPECT_EQ(answer, folder_.Path() / given);
    }
}

TEST_F(QtSaveDialogTest, AsksBeforeItReturnsAnExistingFile) {
    WriteBytes(proposal_, "old");
    const Answer answer = Ask(proposal_, [this](QFileDialog& dialog) {
        for (const auto button : {QMessageBox::No, QMessageBox::Yes}) {
            EXPECT_TRUE(dialog.isVisible()) << "after No, the user may choose another name";
            InDialog<QMessageBox>(
                [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); });
            QTest::keyClick(NameBox(dialog), Qt::Key_Return);
        }
    });
    EXPECT_EQ(answer, proposal_);
    EXPECT_EQ(ReadBytes(proposal_), "old");
}

TEST_F(QtSaveDialogTest, TheEndOfTheSessionCancelsDialogAndQuestion) {
    EXPECT_EQ(Ask(proposal_, [](QFileDialog& /*dialog*/) { frmServer::DismissQuestions(); }), std::nullopt);
    WriteBytes(proposal_, "old");
    const Answer answer = Ask(proposal_, [this](QFileDialog& dialog) {
        InDialog<QMessageBox>([](QMessageBox& /*box*/) { frmServer::DismissQuestions(); });
        QTest::keyClick(NameBox(dialog), Qt::Key_Return);
    });
    EXPECT_EQ(answer, std::nullopt);
}

}  // namespace
}  // namespace tallyhorn
