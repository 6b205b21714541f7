#include "records/AnsiText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace tallyhorn {
namespace {

constexpr std::size_t Bytes = 256;

constexpr std::size_t Index(char character) {
    return static_cast<unsigned char>(character);
}

/// The characters of Windows-1252 at 0x80 to 0x9F.  All others are those of Latin-1.
constexpr std::array<char16_t, 32> HighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned char MultiplicationSign = 0xD7;

constexpr std::array<char, Bytes> MakeLowerTable() {
    std::array<char, Bytes> table{};
    for (std::size_t i = 0; i < Bytes; ++i)
        table[i] = static_cast<char>(i);
    for (std::size_t i = 0; i < Bytes; ++i) {
        if (Index(UpperTable[i]) != i)
            table[Index(UpperTable[i])] = static_cast<char>(i);
    }
    return table;
}

constexpr std::array<char, Bytes> LowerTable = MakeLowerTable();
static_assert(UpperTable[MultiplicationSign] == static_cast<char>(MultiplicationSign));
static_assert(LowerTable[MultiplicationSign] == static_cast<char>(MultiplicationSign));

/// Compares the decimal fraction that has these digits with one half.  Returns 1 if it is larger, 0 if both
/// are equal, and -1 if it is smaller.
int CompareWithHalf(std::string_view digits) {
    if (digits.empty() || digits.front() < '5')
        return -1;
    if (digits.front() > '5')
        return 1;
    return digits.find_first_not_of('0', 1) == std::string_view::npos ? 0 : 1;
}

constexpr std::size_t WordSize = sizeof(std::uint64_t);

/// Writes eight bytes in upper case.  If all are ASCII, it does so in one step: every notification contains
/// the names of an account and a computer, and nearly all such names are ASCII.
void UpperCaseWord(const char* from, char* to) {
    constexpr std::uint64_t Each = 0x0101010101010101U;
    constexpr std::uint64_t HighBits = Each * 0x80U;
    std::uint64_t word = 0;
    std::memcpy(&word, from, WordSize);
    if ((word & HighBits) != 0) {
        std::transform(from, from + WordSize, to, ToUpper);
        return;
    }
    // The first addition sets the high bit of each byte that is at least "a", the second that of each byte
    // above "z".  Shifted right by two, the high bit is 0x20, the difference between lower and upper case.
    const std::uint64_t fromA = word + Each * (0x80U - 'a');
    const std::uint64_t beyondZ = word + Each * (0x80U - 'z' - 1);
    word ^= (fromA & ~beyondZ & HighBits) >> 2U;
    std::memcpy(to, &word, WordSize);
}

}  // namespace

char ToLower(char character) {
    return LowerTable[Index(character)];
}

std::string UpperCase(std::string_view text) {
    std::string result;
    AssignUpperCase(result, text);
    return result;
}

void AssignUpperCase(std::string& to, std::string_view text) {
    to.resize(text.size());
    if (text.size() < WordSize) {
        std::transform(text.begin(), text.end(), to.begin(), ToUpper);
        return;
    }
    const std::size_t last = text.size() - WordSize;
    for (std::size_t i = 0; i < last; i += WordSize)
        UpperCaseWord(text.data() + i, to.data() + i);
    UpperCaseWord(text.data() + last, to.data() + last);
}

std::string RemoveBlanks(std::string_view text) {
    std::string result(text);
    std::erase(result, ' ');
    return result;
}

std::string StripNulls(std::string_view text) {
    std::string result(text);
    std::erase(result, '\0');
    return std::string(Trim(result));
}

int CompareNoCase(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(ToUpper(a[i]));
        const auto y = static_cast<unsigned char>(ToUpper(b[i]));
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

std::string PadWithZeros(std::string number, std::size_t length) {
    return number.insert(0, length - std::min(length, number.size()), '0');
}

bool ReadInt32(std::string_view text, std::int32_t& number) {
    text = Trim(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    // For larger numbers, the value stays at this limit, which the test at the end refuses.
    constexpr std::int64_t Beyond = std::int64_t{1} << 32U;
    std::int64_t value = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && IsDigit(text[digits]); ++digits)
        value = std::min(value * 10 + (text[digits] - '0'), Beyond);
    std::string_view fraction = text.substr(digits);
    if (fraction.starts_with('.'))
        fraction.remove_prefix(1);
    else if (!fraction.empty())
        return false;
    if (digits + fraction.size() == 0 || !std::all_of(fraction.begin(), fraction.end(), IsDigit))
        return false;
    const int half = CompareWithHalf(fraction);
    if (half > 0 || (half == 0 && value % 2 == 1))
        ++value;
    if (negative)
        value = -value;
    if (value < INT32_MIN || value > INT32_MAX)
        return false;
    number = static_cast<std::int32_t>(value);
    return true;
}

char16_t UnicodeFromAnsi(char character) {
    const std::size_t index = Index(character);
    return index >= 0x80 && index < 0xA0 ? HighControls[index - 0x80] : static_cast<char16_t>(index);
}

std::optional<char> AnsiFromUnicode(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character < Bytes))
        return static_cast<char>(character);
    const auto* const found = std::find(HighControls.begin(), HighControls.end(), character);
    if (found == HighControls.end())
        return std::nullopt;
    return static_cast<char>(0x80 + (found - HighControls.begin()));
}

std::optional<Utf8Character> FirstCharacter(std::string_view utf8, Surrogates surrogates) {
    const auto lead = static_cast<unsigned char>(utf8.front());
    if (lead < 0x80)
        return Utf8Character{lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || utf8.size() < length)
        return std::nullopt;
    char32_t value = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(utf8[i]);
        if ((next & 0xC0U) != 0x80U)
            return std::nullopt;
        value = (value << 6U) | (next & 0x3FU);
    }
    constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool refused = value >= 0xD800 && value <= 0xDFFF && surrogates == Surrogates::Refuse;
    if (value < Smallest[length] || value > 0x10FFFF || refused)
        return std::nullopt;
    return Utf8Character{value, length};
}

std::string AnsiFromUtf8(std::string_view utf8) {
    std::string result;
    while (!utf8.empty()) {
        const std::optional<Utf8Character> character = FirstCharacter(utf8);
        result += character ? AnsiFromUnicode(character->Value).value_or('?') : '?';
        utf8.remove_prefix(character ? character->Length : 1);
    }
    return result;
}

}  // namespace tallyhorn
