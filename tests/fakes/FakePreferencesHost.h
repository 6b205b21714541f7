#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/PreferencesHost.h"
#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// What was done, in words and in order, by all that share the list.
using CallLog = std::vector<std::string>;

/// Hands everything on and notes the writes as KEY=VALUE.
class RecordingProfiles final : public ProfileFunctions {
public:
    RecordingProfiles(ProfileFunctions& behind, CallLog& log) : behind_(behind), log_(log) {}

    std::uint32_t GetPrivateProfileString(const char* section, const char* key, const char* defaultText,
                                          char* buffer, std::uint32_t size, const char* file) override {
        return behind_.GetPrivateProfileString(section, key, defaultText, buffer, size, file);
    }
    std::uint32_t GetPrivateProfileInt(const char* section, const char* key, std::int32_t defaultValue,
                                       const char* file) override {
        return behind_.GetPrivateProfileInt(section, key, defaultValue, file);
    }
    bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                   const char* file) override {
        log_.push_back(std::string(key).append("=").append(value));
        return behind_.WritePrivateProfileString(section, key, value, file);
    }
    std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size, const char* file) override {
        return behind_.GetPrivateProfileSectionNames(buffer, size, file);
    }
    std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                           const char* file) override {
        return behind_.GetPrivateProfileSection(section, buffer, size, file);
    }

private:
    ProfileFunctions& behind_;
    CallLog& log_;
};

/// A console that only notes what the preferences make it do.
class FakePreferencesHost final : public PreferencesHost {
public:
    explicit FakePreferencesHost(CallLog& log) : log_(log) {}

    void InitializeWinsock() override { log_.emplace_back("set up the endpoint"); }
    void SetSeperator(std::string_view seperator) override { Note("separator ", seperator); }
    void SetSoundOn(bool on) override { Note("sound ", on ? "on" : "off"); }
    void SetDateTime(std::int32_t order) override { Note("date order ", std::to_string(order)); }
    void ShowTab(int tab, bool shown) override {
        Note(shown ? "show tab " : "hide tab ", std::to_string(tab));
    }
    void ForgetSizes() override { log_.emplace_back("forget sizes"); }
    void MaximizeWindow() override { log_.emplace_back("maximize"); }
    void ShareOutColumnWidths() override { log_.emplace_back("share out widths"); }

private:
    void Note(std::string what, std::string_view value) { log_.push_back(what.append(value)); }

    CallLog& log_;
};

}  // namespace tallyhorn
