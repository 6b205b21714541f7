#include "config/PrivateProfile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <fstream>
#include <limits>

namespace tallyhorn {
namespace {

constexpr std::size_t ValueBufferSize = 512;
constexpr std::size_t SectionBufferSize = 4095;

constexpr std::size_t FirstNamesBufferSize = 255;
/// The buffer for section names is doubled up to this size, which is enough for every list of at most 32,767
/// bytes.
constexpr std::size_t LastNamesBufferSize = FirstNamesBufferSize << 8U;
constexpr auto NamesTimeLimit = std::chrono::seconds(2);
/// The pause between two tries once the buffer has its largest size, so that waiting for the first section of
/// an empty file does not use the processor.
constexpr auto NamesRetryPause = std::chrono::milliseconds(10);

/// Returns the result of `step`, or the default value of its type (false or 0) if it throws an exception.
template <typename Step>
auto Attempt(Step step) {
    try {
        return step();
    } catch (const std::exception&) {
        return decltype(step())();
    }
}

/// Splits the text at its NULs and leaves out the last `dropped` pieces.  After a NUL at the end of the text
/// there is one more piece, which is empty.
std::vector<std::string> SplitAtNuls(std::string_view text, std::size_t dropped) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\0'); end != std::string_view::npos; end = text.find('\0', begin)) {
        pieces.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    pieces.emplace_back(text.substr(begin));
    pieces.resize(pieces.size() - std::min(dropped, pieces.size()));
    return pieces;
}

}  // namespace

bool PrivateProfile::CreateINIFile() {
    return Attempt([&] { return std::ofstream(iniFileName_, std::ios::binary | std::ios::trunc).is_open(); });
}

bool PrivateProfile::GetStringValue(const std::string& sectionName, const std::string& keyName,
                                    std::string& stringValue) {
    stringValue.clear();
    return Attempt([&] {
        std::array<char, ValueBufferSize> buffer{};
        const std::uint32_t count =
            functions_.GetPrivateProfileString(sectionName.c_str(), keyName.c_str(), nullptr, buffer.data(),
                                               ValueBufferSize, iniFileName_.c_str());
        // The count is size - 1 if the value was truncated.  compatibility: a count of size - 2 is also
        // treated as truncated.
        if (count == 0 || count >= ValueBufferSize - 2)
            return false;
        stringValue.assign(buffer.data(), count);
        return true;
    });
}

bool PrivateProfile::GetIntValue(const std::string& sectionName, const std::string& keyName,
                                 std::int32_t& intValue) {
    Attempt([&] {
        intValue = static_cast<std::int32_t>(functions_.GetPrivateProfileInt(
            sectionName.c_str(), keyName.c_str(), intValue, iniFileName_.c_str()));
    });
    return true;
}

bool PrivateProfile::WriteString(const std::string& sectionName, const std::string& keyName,
                                 const std::string& valueName) {
    return Attempt([&] {
        return functions_.WritePrivateProfileString(sectionName.c_str(), keyName.c_str(), valueName.c_str(),
                                                    iniFileName_.c_str());
    });
}

bool PrivateProfile::ReadSectionNames(std::string& names) {
    const Clock::TimePoint start = clock_.Now();
    std::size_t size = FirstNamesBufferSize;
    while (true) {
        names.assign(size, '\0');
        const std::uint32_t count = functions_.GetPrivateProfileSectionNames(
            names.data(), static_cast<std::uint32_t>(size), iniFileName_.c_str());
        if (count > std::uint32_t{std::numeric_limits<std::int16_t>::max()})
            return false;
        names.resize(count);
        if (count != 0 && count != size - 2)
            return true;
        if (std::chrono::floor<std::chrono::seconds>(clock_.Now() - start) >= NamesTimeLimit)
            return true;
        if (size < LastNamesBufferSize)
            size *= 2;
        else
            clock_.Sleep(NamesRetryPause);
    }
}

bool PrivateProfile::GetSectionNames(std::vector<std::string>& sections) {
    return Attempt([&] {
        std::string names;
        if (!ReadSectionNames(names))
            return false;
        sections = SplitAtNuls(names, 1);
        return true;
    });
}

std::vector<std::string> PrivateProfile::ReadEntries(const std::string& sectionName) {
    std::array<char, SectionBufferSize> buffer{};
    const std::uint32_t count = functions_.GetPrivateProfileSection(sectionName.c_str(), buffer.data(),
                                                                    SectionBufferSize, iniFileName_.c_str());
    // A complete list ends with two NULs, the first of which ends its last line, so the last two pieces are
    // empty.  In a truncated list, the last two pieces are the truncated line and an empty one.  In both
    // cases, these two are dropped.
    return SplitAtNuls(std::string_view(buffer.data(), count + 1), 2);
}

bool PrivateProfile::GetKeyNames(const std::string& sectionName, std::vector<std::string>& keyNames) {
    Attempt([&] {
        keyNames = ReadEntries(sectionName);
        for (std::string& entry : keyNames)
            entry.resize(std::min(entry.find('='), entry.size()));
    });
    return false;
}

bool PrivateProfile::GetEntries(const std::string& sectionName, std::vector<std::string>& entries) {
    Attempt([&] { entries = ReadEntries(sectionName); });
    return false;
}

std::int32_t PrivateProfile::GetNumEntriesInSection(const std::string& sectionName) {
    return Attempt([&] { return static_cast<std::int32_t>(ReadEntries(sectionName).size()); });
}

bool PrivateProfile::DeleteSection(const std::string& sectionNameToDelete) {
    return Attempt([&] {
        return functions_.WritePrivateProfileString(sectionNameToDelete.c_str(), nullptr, nullptr,
                                                    iniFileName_.c_str());
    });
}

bool PrivateProfile::DeleteKey(const std::string& sectionName, const std::string& keyName) {
    return Attempt([&] {
        return functions_.WritePrivateProfileString(sectionName.c_str(), keyName.c_str(), nullptr,
                                                    iniFileName_.c_str());
    });
}

}  // namespace tallyhorn
