#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tallyhorn {

// Conversions between the console's ANSI (Windows-1252) bytes and Qt's strings.  Every byte survives the way
// through ToQString and FromQString.

QString ToQString(std::string_view ansi);
/// Converts characters that Windows-1252 lacks to "?".
std::string FromQString(const QString& text);
/// Converts a text for one line on the screen: each control character becomes a middle dot, so that none can
/// hide or move text.
QString ToVisibleLine(std::string_view ansi);
/// Converts a text for several lines on the screen: as ToVisibleLine, but keeps line ends and tabs.
QString ToVisibleText(std::string_view ansi);
/// As ToVisibleLine, for the first thousand characters only: no line on the screen has room for more, and Qt
/// needs long to lay out a text of 60,000.
QString ToShownLine(std::string_view ansi);
/// Returns a tool tip that shows the text literally and wraps it.
QString ToToolTip(const QString& line);
/// Returns a control's caption without the "&" of its access key.
QString WithoutAccessKey(QString caption);

}  // namespace tallyhorn
