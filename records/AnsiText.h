#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyhorn {

// The console's texts are Windows-1252, one byte per character.  All 256 byte values are valid characters
// here, even those that Windows-1252 leaves undefined, and no conversion loses one of them.

/// The upper-case form of each of the 256 characters.
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

/// Return the character in upper or lower case; Windows-1252 has accented letters too.  Other characters are
/// returned unchanged.  ToUpper is inline because matching a notification against filters mainly calls it.
inline char ToUpper(char character) {
    return UpperTable[static_cast<unsigned char>(character)];
}
char ToLower(char character);
std::string UpperCase(std::string_view text);
/// Sets `to` to `text` in upper case.  Allocates only if the capacity of `to` is too small.
void AssignUpperCase(std::string& to, std::string_view text);

/// Returns `text` without leading and trailing blanks.  Only 0x20 is a blank, here and in the functions
/// below.  Inline because it is called for every field, and most fields have at most one blank to remove.
inline std::string_view Trim(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}
/// Returns `text` without any of its blanks.
std::string RemoveBlanks(std::string_view text);
/// Removes the NULs from `text`, then its leading and trailing blanks.
std::string StripNulls(std::string_view text);

/// Compares the texts in upper case by their unsigned byte values.  Returns a negative number if `a` sorts
/// first, 0 if both are equal, and a positive number if `b` sorts first.
int CompareNoCase(std::string_view a, std::string_view b);

/// Returns whether the character is one of the ten ASCII digits.
constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Returns `number` with zeros in front, so that it has at least `length` characters.
std::string PadWithZeros(std::string number, std::size_t length);

/// Reads a number into `number`: blanks around it, a sign and a decimal fraction are allowed; the fraction is
/// rounded, a half to the even neighbour (2.5 is 2, 3.5 is 4).  Returns false and leaves `number` unchanged
/// for any other text and for a number outside 32 bits.
bool ReadInt32(std::string_view text, std::int32_t& number);

/// Returns the Unicode character of a byte.  The five bytes that Windows-1252 leaves undefined become the
/// control character with the same value.
char16_t UnicodeFromAnsi(char character);
/// Returns the byte of the character, or nothing if Windows-1252 does not contain it.
std::optional<char> AnsiFromUnicode(char32_t character);

struct Utf8Character {
    char32_t Value;
    std::size_t Length;
};
/// Whether the three bytes that encode half a surrogate pair count as a character.  UTF-8 forbids them.
enum class Surrogates { Refuse, Accept };
/// Decodes the first character of `utf8`, which must not be empty, and returns it with the number of its
/// bytes.  Returns nothing if the bytes are incomplete, overlong or invalid.
std::optional<Utf8Character> FirstCharacter(std::string_view utf8,
                                            Surrogates surrogates = Surrogates::Refuse);
/// Converts UTF-8 to Windows-1252, with a "?" for each character that Windows-1252 does not contain and for
/// each byte that is not valid UTF-8.
std::string AnsiFromUtf8(std::string_view utf8);

}  // namespace tallyhorn
