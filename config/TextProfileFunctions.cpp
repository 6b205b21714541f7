#include "config/TextProfileFunctions.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <utility>

#include "config/EncodedProfile.h"
#include "config/ProfileText.h"
#include "platform/WholeFile.h"

namespace tallyhorn {
namespace {

EncodedProfile ReadProfile(const char* file) {
    std::string bytes;
    if (file == nullptr ||
        ReadWholeFile(file, TextProfileFunctions::MaximumFileSize, bytes) != ReadOutcome::Complete)
        bytes.clear();
    return EncodedProfile(bytes);
}

std::uint32_t CopyText(std::string_view text, char* buffer, std::uint32_t size) {
    if (buffer == nullptr || size == 0)
        return 0;
    const std::size_t count = std::min<std::size_t>(text.size(), size - 1);
    std::copy_n(text.data(), count, buffer);
    buffer[count] = '\0';
    return static_cast<std::uint32_t>(count);
}

/// Copies as much of the list as fits, followed by two NULs.  A buffer of one byte gets a single NUL, that
/// is, an empty text.
std::uint32_t CopyList(std::string_view list, char* buffer, std::uint32_t size) {
    if (buffer == nullptr || size < 2)
        return CopyText({}, buffer, size);
    const std::size_t count = std::min<std::size_t>(list.size(), size - 2);
    std::copy_n(list.data(), count, buffer);
    buffer[count] = '\0';
    buffer[count + 1] = '\0';
    return static_cast<std::uint32_t>(count);
}

/// Removes trailing spaces and the quotes around a default text, as Windows does.  A text that consists of
/// spaces becomes one space.
std::string_view DefaultText(const char* text) {
    std::string_view result = text == nullptr ? "" : text;
    while (result.size() > 1 && result.ends_with(' '))
        result.remove_suffix(1);
    return UnquoteProfileValue(result);
}

/// The system's functions, but TextProfileFunctions for a file with a mark that those of Windows take for a
/// part of the first line: they know only the mark of UTF-16 little-endian.
class MarkedProfileFunctions final : public ProfileFunctions {
public:
    explicit MarkedProfileFunctions(std::unique_ptr<ProfileFunctions> system) : system_(std::move(system)) {}

    std::uint32_t GetPrivateProfileString(const char* section, const char* key, const char* defaultText,
                                          char* buffer, std::uint32_t size, const char* file) override {
        return For(file).GetPrivateProfileString(section, key, defaultText, buffer, size, file);
    }
    std::uint32_t GetPrivateProfileInt(const char* section, const char* key, std::int32_t defaultValue,
                                       const char* file) override {
        return For(file).GetPrivateProfileInt(section, key, defaultValue, file);
    }
    bool WritePrivateProfileString(const char* section, const char* key, const char* value,
                                   const char* file) override {
        return For(file).WritePrivateProfileString(section, key, value, file);
    }
    std::uint32_t GetPrivateProfileSectionNames(char* buffer, std::uint32_t size, const char* file) override {
        return For(file).GetPrivateProfileSectionNames(buffer, size, file);
    }
    std::uint32_t GetPrivateProfileSection(const char* section, char* buffer, std::uint32_t size,
                                           const char* file) override {
        return For(file).GetPrivateProfileSection(section, buffer, size, file);
    }

private:
    ProfileFunctions& For(const char* file) {
        constexpr std::size_t LongestMark = 3;
        std::string start(LongestMark, '\0');
        if (file != nullptr) {
            std::ifstream stream(file, std::ios::binary);
            stream.read(start.data(), static_cast<std::streamsize>(start.size()));
        }
        const ProfileEncoding encoding = EncodingOf(start);
        const bool known =
            encoding == ProfileEncoding::Ansi || encoding == ProfileEncoding::Utf16LittleEndian;
        return known ? *system_ : text_;
    }

    const std::unique_ptr<ProfileFunctions> system_;
    TextProfileFunctions text_;
};

}  // namespace

std::uint32_t TextProfileFunctions::GetPrivateProfileString(const char* section, const char* key,
                                                            const char* defaultText, char* buffer,
                                                            std::uint32_t size, const char* file) {
    const EncodedProfile profile = ReadProfile(file);
    if (section == nullptr)
        return CopyList(profile.SectionNames(), buffer, size);
    if (key != nullptr) {
        const std::optional<std::string> value = profile.Value(section, key);
        return CopyText(value ? *value : DefaultText(defaultText), buffer, size);
    }
    const std::uint32_t count = CopyList(profile.KeyNames(section), buffer, size);
    // As on Windows, the default text replaces a list whose first name is empty.
    const bool none = count == 0 || buffer[0] == '\0';
    return none ? CopyText(DefaultText(defaultText), buffer, size) : count;
}

std::uint32_t TextProfileFunctions::GetPrivateProfileInt(const char* section, const char* key,
                                                         std::int32_t defaultValue, const char* file) {
    if (section == nullptr || key == nullptr)
        return static_cast<std::uint32_t>(defaultValue);
    const std::optional<std::string> value = ReadProfile(file).Value(section, key);
    return value ? ProfileInteger(*value) : static_cast<std::uint32_t>(defaultValue);
}

bool TextProfileFunctions::WritePrivateProfileString(const char* section, const char* key, const char* value,
                                                     const char* file) {
    if (section == nullptr || file == nullptr)
        return false;
    std::string before;
    const ReadOutcome outcome = ReadWholeFile(file, MaximumFileSize, before);
    if (outcome == ReadOutcome::Failed)
        return false;
    EncodedProfile profile(before);
    if (key == nullptr)
        profile.DeleteSection(section);
    else if (value == nullptr)
        profile.DeleteKey(section, key);
    else
        profile.SetValue(section, key, value);
    const std::string after = profile.Bytes();
    if (after == before)
        return true;
    return after.size() <= MaximumFileSize && ReplaceWholeFile(file, after);
}

std::uint32_t TextProfileFunctions::GetPrivateProfileSectionNames(char* buffer, std::uint32_t size,
                                                                  const char* file) {
    return CopyList(ReadProfile(file).SectionNames(), buffer, size);
}

std::uint32_t TextProfileFunctions::GetPrivateProfileSection(const char* section, char* buffer,
                                                             std::uint32_t size, const char* file) {
    if (section == nullptr)
        return CopyList({}, buffer, size);
    return CopyList(ReadProfile(file).Entries(section), buffer, size);
}

std::unique_ptr<ProfileFunctions> MakeProfileFunctions() {
    std::unique_ptr<ProfileFunctions> system = MakeSystemProfileFunctions();
    if (system == nullptr)
        return std::make_unique<TextProfileFunctions>();
    return std::make_unique<MarkedProfileFunctions>(std::move(system));
}

}  // namespace tallyhorn
