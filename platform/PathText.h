#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tallyhorn {

// Conversion between paths and UTF-8.  On Linux the bytes of a path are not changed.

inline std::filesystem::path PathFromUtf8(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

inline std::string Utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace tallyhorn
