#pragma once

#include <cstdint>
#include <memory>

namespace tallyhorn {

/// Windows' five functions for initialisation (INI) files, with the contracts of their "A" forms: texts are
/// NUL-terminated ANSI, the file is named at each call, and nothing is kept between calls.
/// Called from the user-interface thread; other programs may read the file meanwhile.
///
/// A buffer of `size` bytes always ends in a NUL where `size` is over 0.  The count returned leaves the last
/// NUL out; a text that did not fit is cut and gives size - 1, a list (each name followed by a NUL, and one
/// more NUL after the last) that did not fit gives size - 2.
class ProfileFunctions {
public:
    virtual ~ProfileFunctions() = default;
    /// The value with the blanks and one pair of quotes around it removed, or `defaultText` (null: empty).  A
    /// null key lists the section's keys, a null section the file's sections.
    virtual std::uint32_t GetPrivateProfileString(const char* section, const char* key,
                                                  const char* defaultText, char* buffer, std::uint32_t size,
                                                  const char* file) = 0;
    /// The number at the value's start, modulo 2^32; 0 where there is none, the default where there is no
    /// key.
    virtual std::uint32_t GetPrivateProfileInt(const char* section, const char* key,
                                               std::int32_t defaultValue, const char* file) = 0;
    /// Creates file, section and key as needed.  A null value deletes the key, a null key the section.
    virtual bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                           const char* file) = 0;
    virtual std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size,
                                                        const char* file) = 0;
    /// The section's lines but comments, as key=value.
    virtual std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                                   const char* file) = 0;
};

/// Windows' own; null on a system that has none.
std::unique_ptr<ProfileFunctions> MakeSystemProfileFunctions();

}  // namespace tallyhorn
