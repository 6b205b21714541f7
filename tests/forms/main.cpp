#include <gtest/gtest.h>

#include <QApplication>

/// The forms' tests run without a display, whatever the machine has.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral("4.7.11"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
