#include "config/Settings.h"

#include "config/PrivateProfile.h"

namespace tallyhorn {
namespace {

const std::string Section = "General";

std::string ColumnKey(std::size_t index) {
    return "ColWidth" + std::to_string(index + 1);
}

std::int32_t ReadNumber(PrivateProfile& profile, const std::string& key) {
    std::int32_t number = 0;
    profile.GetIntValue(Section, key, number);
    return number;
}

void WriteNumber(PrivateProfile& profile, const std::string& key, std::int32_t number) {
    WriteSetting(profile, key, std::to_string(number));
}

}  // namespace

Settings ReadSettings(PrivateProfile& profile) {
    Settings settings;
    settings.DateTime = ReadNumber(profile, "DateTime");
    profile.GetStringValue(Section, "Seperator", settings.Seperator);
    settings.CPHeight = ReadNumber(profile, "CPHeight");
    settings.CPWidth = ReadNumber(profile, "CPWidth");
    for (std::size_t i = 0; i < settings.ColumnWidths.size(); ++i)
        settings.ColumnWidths[i] = ReadNumber(profile, ColumnKey(i));
    settings.SoundOn = ReadNumber(profile, "SoundOn") == 1;
    settings.MessageViews = ReadNumber(profile, "MessageViews");
    return settings;
}

std::int32_t ReadSyslogPort(PrivateProfile& profile) {
    return ReadNumber(profile, "SyslogUDPPort");
}

std::array<bool, 3> VisibleMessageViews(std::int32_t messageViews) {
    return {(messageViews & 1) != 0, (messageViews & 2) != 0, (messageViews & 4) != 0};
}

void WriteSetting(PrivateProfile& profile, const std::string& key, const std::string& value) {
    profile.WriteString(Section, key, value);
}

void WriteSizes(PrivateProfile& profile, const Settings& settings) {
    WriteNumber(profile, "CPWidth", settings.CPWidth);
    WriteNumber(profile, "CPHeight", settings.CPHeight);
    for (std::size_t i = 0; i < settings.ColumnWidths.size(); ++i)
        WriteNumber(profile, ColumnKey(i), settings.ColumnWidths[i]);
}

}  // namespace tallyhorn
