#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>

/// The forms' tests run without a display, whatever the machine has.  Variables of the environment do not do:
/// Wine keeps Qt's from the programs that it runs.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef TALLYHORN_FONTS
    // Without a display Qt asks no system for fonts, and shows boxes where it finds none.
    qputenv("QT_QPA_FONTDIR", TALLYHORN_FONTS);
    QFont::insertSubstitutions(QStringLiteral("Sans Serif"), {"DejaVu Sans", "Arial"});
    QFont::insertSubstitutions(QStringLiteral("monospace"), {"DejaVu Sans Mono", "Courier New"});
#endif
    QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral("4.7.11"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
