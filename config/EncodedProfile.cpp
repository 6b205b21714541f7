#include "config/EncodedProfile.h"

#include <algorithm>

#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view LittleEndianMark = "\xFF\xFE";
constexpr std::string_view BigEndianMark = "\xFE\xFF";

constexpr char32_t FirstHighSurrogate = 0xD800;
constexpr char32_t FirstLowSurrogate = 0xDC00;
constexpr char32_t FirstSupplementary = 0x10000;
constexpr char32_t Replacement = 0xFFFD;

std::string_view MarkOf(ProfileEncoding encoding) {
    switch (encoding) {
        case ProfileEncoding::Utf8:
            return Utf8Mark;
        case ProfileEncoding::Utf16LittleEndian:
            return LittleEndianMark;
        case ProfileEncoding::Utf16BigEndian:
            return BigEndianMark;
        case ProfileEncoding::Ansi:
            break;
    }
    return {};
}

bool IsUtf16(ProfileEncoding encoding) {
    return encoding == ProfileEncoding::Utf16LittleEndian || encoding == ProfileEncoding::Utf16BigEndian;
}

void AppendUtf8(std::string& to, char32_t character) {
    const auto append = [&to](char32_t byte) { to += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80)
        return append(character);
    if (character < 0x800) {
        append(0xC0 | character >> 6U);
    } else {
        if (character < FirstSupplementary) {
            append(0xE0 | character >> 12U);
        } else {
            append(0xF0 | character >> 18U);
            append(0x80 | (character >> 12U & 0x3FU));
        }
        append(0x80 | (character >> 6U & 0x3FU));
    }
    append(0x80 | (character & 0x3FU));
}

/// Keeps an unpaired surrogate as three bytes, so that it returns to the file as it was.  Ignores half a unit
/// at the end of a file that was cut.
std::string Utf8FromUtf16(std::string_view bytes, bool littleEndian) {
    const auto unit = [&](std::size_t i) -> char32_t {
        const auto low = static_cast<unsigned char>(bytes[littleEndian ? i : i + 1]);
        const auto high = static_cast<unsigned char>(bytes[littleEndian ? i + 1 : i]);
        return static_cast<char32_t>(high) << 8U | low;
    };
    std::string text;
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
        char32_t character = unit(i);
        const bool high = character >= FirstHighSurrogate && character < FirstLowSurrogate;
        const char32_t next = high && i + 4 <= bytes.size() ? unit(i + 2) : 0;
        if (next >= FirstLowSurrogate && next < FirstLowSurrogate + 0x400) {
            character =
                FirstSupplementary + ((character - FirstHighSurrogate) << 10U) + next - FirstLowSurrogate;
            i += 2;
        }
        AppendUtf8(text, character);
    }
    return text;
}

std::string Utf16FromUtf8(std::string_view text, bool littleEndian) {
    std::string bytes;
    const auto append = [&](char32_t unit) {
        const auto low = static_cast<char>(static_cast<unsigned char>(unit & 0xFFU));
        const auto high = static_cast<char>(static_cast<unsigned char>(unit >> 8U & 0xFFU));
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    };
    while (!text.empty()) {
        const Utf8Character invalid{Replacement, 1};
        // Utf8FromUtf16 writes an unpaired surrogate as three bytes.
        const auto [character, length] = FirstCharacter(text, Surrogates::Accept).value_or(invalid);
        text.remove_prefix(length);
        if (character < FirstSupplementary) {
            append(character);
            continue;
        }
        append(FirstHighSurrogate + ((character - FirstSupplementary) >> 10U & 0x3FFU));
        append(FirstLowSurrogate + (character & 0x3FFU));
    }
    return bytes;
}

std::string Decode(std::string_view bytes, ProfileEncoding encoding) {
    bytes.remove_prefix(MarkOf(encoding).size());
    return IsUtf16(encoding) ? Utf8FromUtf16(bytes, encoding == ProfileEncoding::Utf16LittleEndian)
                             : std::string(bytes);
}

}  // namespace

ProfileEncoding EncodingOf(std::string_view bytes) {
    for (const ProfileEncoding encoding :
         {ProfileEncoding::Utf8, ProfileEncoding::Utf16LittleEndian, ProfileEncoding::Utf16BigEndian}) {
        if (bytes.starts_with(MarkOf(encoding)))
            return encoding;
    }
    return ProfileEncoding::Ansi;
}

EncodedProfile::EncodedProfile(std::string_view bytes)
    : encoding_(EncodingOf(bytes)), text_(Decode(bytes, encoding_)) {}

std::string EncodedProfile::Bytes() const {
    std::string bytes(MarkOf(encoding_));
    bytes += IsUtf16(encoding_)
                 ? Utf16FromUtf8(text_.Bytes(), encoding_ == ProfileEncoding::Utf16LittleEndian)
                 : text_.Bytes();
    return bytes;
}

std::string EncodedProfile::ToAnsi(std::string_view text) const {
    return encoding_ == ProfileEncoding::Ansi ? std::string(text) : AnsiFromUtf8(text);
}

std::string EncodedProfile::Encode(std::string_view ansi) const {
    if (encoding_ == ProfileEncoding::Ansi)
        return std::string(ansi);
    std::string text;
    for (const char character : ansi)
        AppendUtf8(text, UnicodeFromAnsi(character));
    return text;
}

std::optional<std::string> EncodedProfile::Value(std::string_view section, std::string_view key) const {
    std::optional<std::string> value = text_.Value(Encode(section), Encode(key));
    if (value)
        value = ToAnsi(*value);
    return value;
}

void EncodedProfile::SetValue(std::string_view section, std::string_view key, std::string_view value) {
    text_.SetValue(Encode(section), Encode(key), Encode(value));
}

void EncodedProfile::DeleteKey(std::string_view section, std::string_view key) {
    text_.DeleteKey(Encode(section), Encode(key));
}

}  // namespace tallyhorn
