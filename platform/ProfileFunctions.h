#pragma once

#include <cstdint>
#include <memory>

namespace tallyhorn {

/// The port for the five Windows functions that read and write initialisation (INI) files.  Every back end
/// behaves like the "A" versions of these functions: texts are NUL-terminated Windows-1252, each call names
/// the file, and nothing is cached between calls.  Other programs may read the file at the same time.
///
/// Functions with a buffer of `size` bytes write a terminating NUL if `size` is not 0, and return the number
/// of bytes before it.  A text that does not fit is cut, and the result is size - 1.  A list consists of
/// names that each end with a NUL, and one more NUL; if it does not fit, the result is size - 2.
class ProfileFunctions {
public:
    virtual ~ProfileFunctions() = default;
    /// Reads a value without surrounding blanks and without a pair of quotes around it.  If the key does not
    /// exist, reads `defaultText` instead, or an empty text if that is null.  If `key` is null, lists the
    /// keys of the section; if `section` is null, lists the sections.
    virtual std::uint32_t GetPrivateProfileString(const char* section, const char* key,
                                                  const char* defaultText, char* buffer, std::uint32_t size,
                                                  const char* file) = 0;
    /// Returns the number at the start of the value, modulo 2^32.  Returns 0 if the value does not begin with
    /// a number, and `defaultValue` if the key does not exist.
    virtual std::uint32_t GetPrivateProfileInt(const char* section, const char* key,
                                               std::int32_t defaultValue, const char* file) = 0;
    /// Writes a value and creates the file, the section and the key as needed.  Deletes the key if `value` is
    /// null, and the section if `key` is null.
    virtual bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                           const char* file) = 0;
    virtual std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size,
                                                        const char* file) = 0;
    /// Lists the lines of the section as key=value, without comments.
    virtual std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                                   const char* file) = 0;
};

/// Returns the functions of Windows, or null on Linux, which has none.
std::unique_ptr<ProfileFunctions> MakeSystemProfileFunctions();

}  // namespace tallyhorn
