#pragma once

#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// The profile functions over plain files, for a system that has none of its own; owns nothing and keeps
/// nothing between calls.  Called from the user-interface thread; a reader in another program sees the file
/// as it was before a write or after it.
///
/// Files are ANSI text of at most `MaximumFileSize` bytes.  A larger one, or one that is there and cannot be
/// read, gives the defaults, and a write to it fails rather than losing what it holds.
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

}  // namespace tallyhorn
