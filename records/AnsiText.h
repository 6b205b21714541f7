#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

// The console's text: single bytes of Windows-1252, all 256 of them kept.  The functions are pure and safe in
// any thread; nothing here allocates but the strings that are returned.

/// Upper case of all 256 bytes.
inline constexpr std::array<char, 256> UpperTable = [] {
    constexpr std::size_t DivisionSign = 0xF7;
    std::array<char, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool hasUpper = (i >= 'a' && i <= 'z') || (i >= 0xE0 && i <= 0xFE && i != DivisionSign);
        table[i] = static_cast<char>(hasUpper ? i - 0x20 : i);
    }
    table[0x9A] = static_cast<char>(0x8A);
    table[0x9C] = static_cast<char>(0x8C);
    table[0x9E] = static_cast<char>(0x8E);
    table[0xFF] = static_cast<char>(0x9F);
    return table;
}();

/// Upper and lower case in Windows-1252, accented letters included; a byte without the other case is kept.
/// Inline, because matching a notification folds some sixty bytes and little else.
inline char ToUpper(char character) {
    return UpperTable[static_cast<unsigned char>(character)];
}
char ToLower(char character);
std::string UpperCase(std::string_view text);
/// Replaces `to` by `text` in upper case, without a new allocation where its room suffices.
void AssignUpperCase(std::string& to, std::string_view text);

/// Leading and trailing blanks (0x20 alone) removed.  Inline, because most fields have one blank or none.
inline std::string_view Trim(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}
/// Every blank (0x20) removed.
std::string RemoveBlanks(std::string_view text);
/// Every NUL removed, then leading and trailing blanks.
std::string StripNulls(std::string_view text);

/// Less than, equal to or greater than zero, as the upper-case texts compare byte by byte.
int CompareNoCase(std::string_view a, std::string_view b);

/// Whether the character is one of the ten ASCII digits.
constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Reads a number into `number`: blanks around it, a sign and a decimal fraction are allowed; the fraction is
/// rounded, a half to the even neighbour (2.5 is 2, 3.5 is 4).  Returns false and leaves `number` unchanged
/// for any other text and for a number outside 32 bits.
bool ReadInt32(std::string_view text, std::int32_t& number);

/// Unicode for one byte; the five undefined ones give the control character of the same value.
char16_t UnicodeFromAnsi(char character);
/// Nothing where Windows-1252 lacks the character.
std::optional<char> AnsiFromUnicode(char32_t character);
/// UTF-8 to ANSI, with "?" for what Windows-1252 lacks or what is not UTF-8.
std::string AnsiFromUtf8(std::string_view utf8);

}  // namespace tallyhorn
