#include "ui/AnsiString.h"

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr QChar MiddleDot{0x00B7};

bool IsControl(char16_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool IsLayout(char16_t character) {
    return character == u'\r' || character == u'\n' || character == u'\t';
}

template <typename IsHidden>
QString WithDots(std::string_view ansi, IsHidden isHidden) {
    QString text = ToQString(ansi);
    for (QChar& character : text) {
        if (isHidden(character.unicode()))
            character = MiddleDot;
    }
    return text;
}

}  // namespace

QString ToQString(std::string_view ansi) {
    QString text(static_cast<qsizetype>(ansi.size()), Qt::Uninitialized);
    QChar* to = text.data();
    for (const char character : ansi)
        *to++ = QChar(UnicodeFromAnsi(character));
    return text;
}

std::string FromQString(const QString& text) {
    std::string ansi;
    for (const char32_t character : text.toStdU32String())
        ansi += AnsiFromUnicode(character).value_or('?');
    return ansi;
}

QString ToVisibleLine(std::string_view ansi) {
    return WithDots(ansi, IsControl);
}

QString ToVisibleText(std::string_view ansi) {
    return WithDots(ansi, [](char16_t character) { return IsControl(character) && !IsLayout(character); });
}

QString ToShownLine(std::string_view ansi) {
    constexpr std::size_t LongestShown = 1000;
    return ToVisibleLine(ansi.substr(0, LongestShown));
}

/// Qt wraps a tool tip only if it is markup, so this returns a paragraph that contains the escaped text.
QString ToToolTip(const QString& line) {
    return QStringLiteral("<p>%1</p>").arg(line.toHtmlEscaped());
}

QString WithoutAccessKey(QString caption) {
    return caption.remove(QLatin1Char('&'));
}

}  // namespace tallyhorn
