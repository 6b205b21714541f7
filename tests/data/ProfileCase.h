#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ProfileFunctions.h"
#include "tests/fakes/FileBytes.h"

namespace tallyhorn {

/// One call of a profile function on a file of known content, and what it answered; a line of
/// tests/data/profile-cases.tsv.  A missing text stands for a null pointer.
struct ProfileCase {
    std::string Content;
    /// "string", "int", "names", "section" or "write".
    std::string Operation;
    std::optional<std::string> Section;
    std::optional<std::string> Key;
    /// The default of "string", the value of "write".
    std::optional<std::string> Text;
    /// The buffer's size; the default of "int".
    std::int32_t Number = 0;
    std::string Answer;
};

/// Printable ASCII but the backslash as it stands, every other byte as \xHH.
inline std::string Escape(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character >= ' ' && character <= '~' && character != '\\') {
            result += character;
            continue;
        }
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(character)));
        result += code;
    }
    return result;
}

inline std::string Unescape(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        const std::string code(text.substr(i + 2, 2));
        result += static_cast<char>(std::strtoul(code.c_str(), nullptr, 16));
        i += 3;
    }
    return result;
}

constexpr std::string_view NullField = "\\null";

inline std::string EscapeField(const std::optional<std::string>& text) {
    return text ? Escape(*text) : std::string(NullField);
}

inline std::optional<std::string> UnescapeField(std::string_view field) {
    if (field == NullField)
        return std::nullopt;
    return Unescape(field);
}

inline std::string FormatCase(const ProfileCase& one) {
    std::string line = Escape(one.Content) + '\t' + one.Operation;
    for (const auto* text : {&one.Section, &one.Key, &one.Text})
        line += '\t' + EscapeField(*text);
    return line + '\t' + std::to_string(one.Number) + '\t' + Escape(one.Answer);
}

inline std::optional<ProfileCase> ParseCase(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t end = line.find('\t'); end != std::string_view::npos; end = line.find('\t')) {
        fields.push_back(line.substr(0, end));
        line.remove_prefix(end + 1);
    }
    fields.push_back(line);
    if (fields.size() != 7)
        return std::nullopt;
    return ProfileCase{Unescape(fields[0]),
                       std::string(fields[1]),
                       UnescapeField(fields[2]),
                       UnescapeField(fields[3]),
                       UnescapeField(fields[4]),
                       static_cast<std::int32_t>(std::strtol(std::string(fields[5]).c_str(), nullptr, 10)),
                       Unescape(fields[6])};
}

/// The count, and the buffer's bytes up to and with the NUL behind them.
inline std::string FormatBuffer(std::uint32_t count, const std::string& buffer) {
    return std::to_string(count) + ':' + buffer.substr(0, count + 1);
}

inline std::string ReadEntries(ProfileFunctions& functions, const std::string& section,
                               const std::string& path) {
    std::string entries(8192, '#');
    entries.resize(functions.GetPrivateProfileSection(section.c_str(), entries.data(), 8192, path.c_str()));
    return entries;
}

/// What stands before the first section, then every section's name with its entries.
inline std::string ReadBack(ProfileFunctions& functions, const std::string& path) {
    std::string names(8192, '#');
    names.resize(functions.GetPrivateProfileSectionNames(names.data(), 8192, path.c_str()));
    std::string result = ReadEntries(functions, "", path);
    for (std::size_t end = names.find('\0'); end != std::string::npos; end = names.find('\0')) {
        const std::string name = names.substr(0, end);
        names.erase(0, end + 1);
        result += '[' + name + ']' + ReadEntries(functions, name, path);
    }
    return result;
}

inline const char* PointerTo(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

/// Puts the content under `path`, makes the call, and says what came of it.
inline std::string RunCase(ProfileFunctions& functions, const ProfileCase& one,
                           const std::filesystem::path& path) {
    WriteBytes(path, one.Content);
    const std::string file = path.string();
    const char* section = PointerTo(one.Section);
    const char* key = PointerTo(one.Key);
    const char* text = PointerTo(one.Text);
    const auto size = static_cast<std::uint32_t>(one.Number);
    if (one.Operation == "int")
        return std::to_string(functions.GetPrivateProfileInt(section, key, one.Number, file.c_str()));
    if (one.Operation == "write") {
        const bool written = functions.WritePrivateProfileString(section, key, text, file.c_str());
        return (written ? "1:" : "0:") + ReadBack(functions, file);
    }
    std::string buffer(size + 1, '#');
    if (one.Operation == "string")
        return FormatBuffer(
            functions.GetPrivateProfileString(section, key, text, buffer.data(), size, file.c_str()), buffer);
    if (one.Operation == "names")
        return FormatBuffer(functions.GetPrivateProfileSectionNames(buffer.data(), size, file.c_str()),
                            buffer);
    if (one.Operation == "section")
        return FormatBuffer(functions.GetPrivateProfileSection(section, buffer.data(), size, file.c_str()),
                            buffer);
    return "no such operation";
}

}  // namespace tallyhorn
