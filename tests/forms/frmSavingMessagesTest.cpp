#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include "storage/forms/frmSavingMessages.h"

namespace tallyhorn {
namespace {

QString LabelText(const frmSavingMessages& window, const char* name) {
    const auto* const label = window.findChild<QLabel*>(QString::fromLatin1(name));
    return label != nullptr ? label->text() : QStringLiteral("(no label)");
}

TEST(frmSavingMessagesTest, ShowsNoProgressWhileSaving) {
    frmSavingMessages window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Saving Messages ... Please Wait"));
    EXPECT_EQ(LabelText(window, "lblWait"),
              QStringLiteral(
                  "The Tallyhorn Listener Console is saving received messages to disk.  Please wait..."));
    EXPECT_FALSE(window.findChild<QProgressBar*>()->isVisible());
    EXPECT_FALSE(window.findChild<QLabel*>(QStringLiteral("lblProgress"))->isVisible());
}

TEST(frmSavingMessagesTest, ShowsTheProgressOfLoading) {
    frmSavingMessages window(frmSavingMessages::Work::Loading);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Loading Messages ... Please Wait"));
    EXPECT_EQ(LabelText(window, "lblWait"),
              QStringLiteral(
                  "The Tallyhorn Listener Console is loading received messages from disk.  Please wait..."));
    const auto* const bar = window.findChild<QProgressBar*>();
    ASSERT_TRUE(bar->isVisible());
    const struct {
        std::uint64_t Done;
        std::uint64_t Total;
        const char* Text;
        int Thousandths;
    } cases[] = {
        {0, 0, "0 of 0", 0},
        {0, 50'000, "0 of 50,000", 0},
        {999, 1'000, "999 of 1,000", 999},
        {12'400, 50'000, "12,400 of 50,000", 248},
        {1'234'567, 12'345'670, "1,234,567 of 12,345,670", 100},
        {50'000, 50'000, "50,000 of 50,000", 1000},
        {70, 60, "70 of 70", 1000},
    };
    QCoreApplication::processEvents();
    const QSize size = window.size();
    for (const auto& testCase : cases) {
        window.Show(testCase.Done, testCase.Total);
        QCoreApplication::processEvents();
        EXPECT_EQ(LabelText(window, "lblProgress"), QString::fromLatin1(testCase.Text));
        EXPECT_EQ(bar->value() * 1000 / bar->maximum(), testCase.Thousandths) << testCase.Text;
        EXPECT_EQ(window.size(), size) << testCase.Text;
    }
}

TEST(frmSavingMessagesTest, TellsItsPartsToScreenReaders) {
    frmSavingMessages window(frmSavingMessages::Work::Loading);
    window.Show(1, 2);
    QAccessibleInterface* const bar =
        QAccessible::queryAccessibleInterface(window.findChild<QProgressBar*>());
    EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
    EXPECT_EQ(bar->text(QAccessible::Name), QStringLiteral("Messages loaded"));
    QAccessibleInterface* const label =
        QAccessible::queryAccessibleInterface(window.findChild<QLabel*>(QStringLiteral("lblProgress")));
    EXPECT_EQ(label->text(QAccessible::Name), QStringLiteral("1 of 2"));
}

}  // namespace
}  // namespace tallyhorn
