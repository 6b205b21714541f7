#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tallyhorn {

// Paths as text: UTF-8 on Windows whatever its code page is, and on Linux the bytes that they are made of.
// Safe in any thread.

inline std::filesystem::path PathFromUtf8(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

inline std::string Utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace tallyhorn
