#pragma once

#include <memory>

#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// Implements the profile functions for a system that has none.  Caches nothing between calls.  A write
/// replaces the file in one step, so that other programs see either the old content or the new one.
///
/// Files have at most `MaximumFileSize` bytes and any ProfileEncoding, which a write keeps.  If a file is
/// larger, or exists but cannot be read, the functions return the defaults and refuse to write to the file,
/// because its content would be lost.
class TextProfileFunctions : public ProfileFunctions {
public:
    static constexpr std::size_t MaximumFileSize = std::size_t{16} << 20U;

    std::uint32_t GetPrivateProfileString(const char* section, const char* key, const char* defaultText,
                                          char* buffer, std::uint32_t size, const char* file) override;
    std::uint32_t GetPrivateProfileInt(const char* section, const char* key, std::int32_t defaultValue,
                                       const char* file) override;
    bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                   const char* file) override;
    std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size, const char* file) override;
    std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                           const char* file) override;
};

/// Returns the system's profile functions, or a TextProfileFunctions if it has none.  In either case, files
/// in every ProfileEncoding can be read and written.
std::unique_ptr<ProfileFunctions> MakeProfileFunctions();

}  // namespace tallyhorn
