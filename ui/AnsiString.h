#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tallyhorn {

// Conversions between the console's ANSI (Windows-1252) bytes and Qt's strings.  FromQString restores exactly
// the bytes that were converted by ToQString.

QString ToQString(std::string_view ansi);
/// Converts a string to Windows-1252, with "?" for each character that Windows-1252 lacks.
std::string FromQString(const QString& text);
/// Converts a text for one line on the screen: each control character becomes a middle dot, so that none can
/// hide or move text.
QString ToVisibleLine(std::string_view ansi);
/// Converts a text for several lines on the screen, as ToVisibleLine does, but keeps line ends and tabs.
QString ToVisibleText(std::string_view ansi);
/// Converts as ToVisibleLine does, but only the first thousand characters: no line on the screen has room for
/// more, and Qt takes long to lay out a text of 60,000 characters.
QString ToShownLine(std::string_view ansi);
/// Returns a tool tip that shows the text literally and wraps it.
QString ToToolTip(const QString& line);
/// Returns a control's caption without the "&" of its access key.
QString WithoutAccessKey(QString caption);

}  // namespace tallyhorn
