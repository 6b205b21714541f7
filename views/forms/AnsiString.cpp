#include "views/forms/AnsiString.h"

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr QChar MiddleDot{0x00B7};

bool IsControl(char16_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
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
    QString text = ToQString(ansi);
    for (QChar& character : text) {
        if (IsControl(character.unicode()))
            character = MiddleDot;
    }
    return text;
}

QString WithoutAccessKey(QString caption) {
    return caption.remove(QLatin1Char('&'));
}

}  // namespace tallyhorn
