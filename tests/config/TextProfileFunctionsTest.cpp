// Compares TextProfileFunctions, and the system's own profile functions if it has some, with the answers that
// Wine's profile functions gave.  To add a case, add a line with any answer to profile-cases.tsv; the test
// then fails in the Windows build and shows the right answer.

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

/// The fields of a line of tests/data/profile-cases.tsv, separated by tabs.  "\xHH" means a byte,
/// "\null" a null pointer.  Only lines in which Wine and Windows differ have the last two fields.
enum Field { Content, Operation, Section, Key, Text, Number, Answer, OnWindows, Reason };
using Case = std::vector<std::string>;

std::vector<Case> ReadCases() {
    std::ifstream file(TALLYHORN_TEST_DATA "/profile-cases.tsv", std::ios::binary);
    std::vector<Case> cases;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        Case& one = cases.emplace_back();
        for (std::string field; std::getline(fields, field, '\t'); one.push_back(field)) {
            for (std::size_t at = 0; (at = field.find("\\x", at)) != std::string::npos; ++at)
                field.replace(at, 4, 1, static_cast<char>(std::stoi(field.substr(at + 2, 2), nullptr, 16)));
        }
        EXPECT_TRUE(one.size() == Answer + 1 || one.size() == Reason + 1) << line;
    }
    EXPECT_GT(cases.size(), 300U);
    return cases;
}

/// Returns the entries before the first header, then the name and the entries of each section.
std::string Sections(ProfileFunctions& functions, const char* file) {
    constexpr std::uint32_t Size = 8192;
    std::string names(Size, '#'), result;
    names.resize(functions.GetPrivateProfileSectionNames(names.data(), Size, file));
    std::istringstream list('\0' + names);
    for (std::string name; std::getline(list, name, '\0');) {
        std::string entries(Size, '#');
        entries.resize(functions.GetPrivateProfileSection(name.c_str(), entries.data(), Size, file));
        if (!name.empty())
            result.append(1, '[').append(name).append(1, ']');
        result += entries;
    }
    return result;
}

/// Makes the call that the case describes, on a file with the case's content.
std::string Call(ProfileFunctions& functions, const Case& one, const std::string& path) {
    WriteBytes(path, one[Content]);
    const char* const file = path.c_str();
    const auto pointer = [&one](Field field) {
        return one[field] == "\\null" ? nullptr : one[field].c_str();
    };
    const int number = std::stoi(one[Number]);
    if (one[Operation] == "int")
        return std::to_string(functions.GetPrivateProfileInt(pointer(Section), pointer(Key), number, file));
    if (one[Operation] == "write") {
        const bool written =
            functions.WritePrivateProfileString(pointer(Section), pointer(Key), pointer(Text), file);
        return (written ? "1:" : "0:") + Sections(functions, file);
    }
    // The other functions fill a buffer.  Their answer is the returned count, then that many bytes and the
    // NUL behind them.
    const auto size = static_cast<std::uint32_t>(number);
    std::string buffer(size + 1, '#');
    const std::uint32_t count =
        one[Operation] == "string"
            ? functions.GetPrivateProfileString(pointer(Section), pointer(Key), pointer(Text), buffer.data(),
                                                size, file)
        : one[Operation] == "names"
            ? functions.GetPrivateProfileSectionNames(buffer.data(), size, file)
            : functions.GetPrivateProfileSection(pointer(Section), buffer.data(), size, file);
    return std::to_string(count) + ':' + buffer.substr(0, count + 1);
}

/// Checks TextProfileFunctions and, if the system has its own profile functions, those too.
TEST(TextProfileFunctions, AnswersAsTheSystemDoes) {
    const TemporaryFolder folder;
    TextProfileFunctions functions;
    const std::unique_ptr<ProfileFunctions> system = MakeSystemProfileFunctions();
    int number = 0;
    for (const Case& one : ReadCases()) {
        SCOPED_TRACE(testing::PrintToString(one));
        // Each case has its own file, because the system may cache what it has read.
        const std::string path = folder / (std::to_string(number++) + ".ini");
        const std::string& onWindows = one[one.size() > OnWindows ? OnWindows : Answer];
        EXPECT_EQ(Call(functions, one, path), onWindows);
        const std::string answer = system == nullptr ? onWindows : Call(*system, one, path);
        EXPECT_TRUE(answer == one[Answer] || answer == onWindows) << testing::PrintToString(answer);
    }
}

TEST(TextProfileFunctions, WritesReplaceTheFileUnlessItIsTooLargeToBeRead) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.ini";
    TextProfileFunctions functions;
    const auto write = [&functions](const std::string& file, const char* value) {
        return functions.WritePrivateProfileString("s", "k", value, file.c_str());
    };
    const auto read = [&functions](const std::string& file) {
        return functions.GetPrivateProfileInt("s", "k", 77, file.c_str());
    };
    EXPECT_TRUE(write(path, nullptr));
    EXPECT_EQ(CountFiles(folder.Path()), 0U) << "deleting a key creates no file";
    EXPECT_FALSE(write(folder / "missing/a.ini", "1"));
    EXPECT_FALSE(write(folder.Path().string(), "1"));
    EXPECT_EQ(read(folder.Path().string()), 77U);

    std::string bytes = "[s]\nk=5\n";
    bytes.resize(TextProfileFunctions::MaximumFileSize, ';');
    WriteBytes(path, bytes);
    EXPECT_EQ(read(path), 5U);
    EXPECT_TRUE(write(path, "6"));
    EXPECT_FALSE(write(path, "12")) << "the file would become too large to be read";
    EXPECT_EQ(read(path), 6U);
    WriteBytes(path, bytes + ';');
    EXPECT_EQ(read(path), 77U);
    EXPECT_FALSE(write(path, "6"));
    EXPECT_EQ(ReadBytes(path).size(), bytes.size() + 1);
    EXPECT_EQ(CountFiles(folder.Path()), 1U);
}

std::string Utf16(std::u16string_view text, bool littleEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    }
    return bytes;
}

TEST(TextProfileFunctions, ReadsAndKeepsTheEncodingOfAMarkedFile) {
    // The comment holds characters beyond ANSI and half a surrogate pair, which no write may change.
    const std::u16string before = u"\xFEFF; \x0416 \xD83D\xDE00 \xD800!\r\n[General]\r\nSeperator=\x20AC";
    const std::u16string written = before.substr(0, before.size() - 1) + u"\x2026\r\nMore=\xE4\r\n";
    const std::string comment = "\xEF\xBB\xBF; \xD0\x96 \xFF\r\n[General]\r\nSeperator=";
    const std::pair<std::string, std::string> cases[] = {
        {Utf16(before, true), Utf16(written, true)},
        {Utf16(before, false), Utf16(written, false)},
        {comment + "\xE2\x82\xAC", comment + "\xE2\x80\xA6\r\nMore=\xC3\xA4\r\n"},
        {"\xFF\xFE", Utf16(u"\xFEFF[General]\r\nSeperator=\x2026\r\nMore=\xE4\r\n", true)},
        {"\xEF\xBB\xBF", "\xEF\xBB\xBF[General]\r\nSeperator=\xE2\x80\xA6\r\nMore=\xC3\xA4\r\n"},
    };
    const TemporaryFolder folder;
    const std::unique_ptr<ProfileFunctions> functions = MakeProfileFunctions();
    int number = 0;
    for (const auto& [bytes, expected] : cases) {
        const std::string path = folder / (std::to_string(number++) + ".ini");
        const auto read = [&](const char* key) {
            std::string buffer(20, '#');
            buffer.resize(
                functions->GetPrivateProfileString("General", key, "", buffer.data(), 20, path.c_str()));
            return buffer;
        };
        WriteBytes(path, bytes);
        EXPECT_EQ(read("Seperator"), bytes.size() > 3 ? "\x80" : "") << number;
        EXPECT_TRUE(functions->WritePrivateProfileString("General", "Seperator", "\x85", path.c_str()));
        EXPECT_TRUE(functions->WritePrivateProfileString("General", "More", "\xE4", path.c_str()));
        EXPECT_EQ(ReadBytes(path), expected) << number;
        EXPECT_EQ(read("Seperator") + read("More"), "\x85\xE4") << number;
    }
}

}  // namespace
}  // namespace tallyhorn
