#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>

#include "ui/FocusStyle.h"

/// Runs the tests of the forms without a display.  The Qt variables are set here and not by CTest, because
/// Wine does not pass variables that begin with QT_ to the programs that it runs.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (*TALLYHORN_FONTS != '\0') {
        // On Windows the "offscreen" plug-in does not ask the system for fonts: without a folder of fonts it
        // draws boxes instead of letters.
        qputenv("QT_QPA_FONTDIR", TALLYHORN_FONTS);
        QFont::insertSubstitutions(QStringLiteral("Sans Serif"), {"DejaVu Sans", "Arial"});
        QFont::insertSubstitutions(QStringLiteral("monospace"), {"DejaVu Sans Mono", "Courier New"});
    }
    QApplication application(argc, argv);
    QApplication::setStyle(new tallyhorn::FocusStyle);
    QApplication::setApplicationVersion(QStringLiteral("4.7.11"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
