#include "platform/ProfileFunctions.h"

#include <windows.h>

// windows.h defines these names as macros for the "A" or "W" functions; here they are names of methods.
#undef GetPrivateProfileString
#undef GetPrivateProfileInt
#undef WritePrivateProfileString
#undef GetPrivateProfileSectionNames
#undef GetPrivateProfileSection

namespace tallyhorn {
namespace {

class WindowsProfileFunctions final : public ProfileFunctions {
public:
    std::uint32_t GetPrivateProfileString(const char* section, const char* key, const char* defaultText,
                                          char* buffer, std::uint32_t size, const char* file) override {
        return GetPrivateProfileStringA(section, key, defaultText, buffer, size, file);
    }
    std::uint32_t GetPrivateProfileInt(const char* section, const char* key, std::int32_t defaultValue,
                                       const char* file) override {
        return GetPrivateProfileIntA(section, key, defaultValue, file);
    }
    bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                   const char* file) override {
        return WritePrivateProfileStringA(section, key, value, file) != 0;
    }
    std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size, const char* file) override {
        return GetPrivateProfileSectionNamesA(buffer, size, file);
    }
    std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                           const char* file) override {
        return GetPrivateProfileSectionA(section, buffer, size, file);
    }
};

}  // namespace

std::unique_ptr<ProfileFunctions> MakeSystemProfileFunctions() {
    return std::make_unique<WindowsProfileFunctions>();
}

}  // namespace tallyhorn
