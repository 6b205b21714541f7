#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tallyhorn {

// Between the console's ANSI bytes and Qt's strings; every byte comes back as it went.

QString ToQString(std::string_view ansi);
/// "?" for characters that Windows-1252 lacks.
std::string FromQString(const QString& text);
/// For one line on the screen: control characters become a middle dot, so that nothing hides or moves text.
QString ToVisibleLine(std::string_view ansi);
/// For several lines on the screen: the same, but for line ends and tabs, which stay.
QString ToVisibleText(std::string_view ansi);
/// The same of a text's first thousand characters: no line shows more, and laying out sixty thousand takes
/// long.
QString ToShownLine(std::string_view ansi);
/// A tool tip that shows the line as it is and in as many lines as it needs.
QString ToToolTip(const QString& line);
/// A control's caption without the "&" of its access key: its accessible name.
QString WithoutAccessKey(QString caption);

}  // namespace tallyhorn
