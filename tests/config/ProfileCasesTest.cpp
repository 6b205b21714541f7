// Compares TextProfileFunctions, and the system's own profile functions if it has some, with the answers that
// Wine's profile functions gave.  To add a case, write a line with any answer; the failure of the Windows
// build then shows the right one.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

/// The fields of a line of tests/data/profile-cases.tsv, separated by tabs.  "\xHH" stands for a byte,
/// "\null" for a null pointer.  Only lines in which Wine and Windows differ have the last two fields.
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

/// Calls a function that fills a buffer.  Returns the count, and the counted bytes with the NUL after them.
template <typename Fill>
std::string Filled(std::uint32_t size, Fill fill) {
    std::string buffer(size + 1, '#');
    const std::uint32_t count = fill(buffer.data(), size);
    return std::to_string(count) + ':' + buffer.substr(0, count + 1);
}

/// Returns the entries before the first header, then the name and the entries of each section.
std::string Sections(ProfileFunctions& functions, const char* file) {
    constexpr std::uint32_t Size = 8192;
    std::string names(Size, '#');
    names.resize(functions.GetPrivateProfileSectionNames(names.data(), Size, file));
    std::string result;
    for (std::istringstream list('\0' + names); !list.eof();) {
        std::string name;
        std::getline(list, name, '\0');
        if (list.eof())
            break;
        std::string entries(Size, '#');
        entries.resize(functions.GetPrivateProfileSection(name.c_str(), entries.data(), Size, file));
        result += (name.empty() ? "" : '[' + name + ']') + entries;
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
    const auto size = static_cast<std::uint32_t>(number);
    if (one[Operation] == "int")
        return std::to_string(functions.GetPrivateProfileInt(pointer(Section), pointer(Key), number, file));
    if (one[Operation] == "write") {
        const bool written =
            functions.WritePrivateProfileString(pointer(Section), pointer(Key), pointer(Text), file);
        return (written ? "1:" : "0:") + Sections(functions, file);
    }
    return Filled(size, [&](char* buffer, std::uint32_t room) {
        if (one[Operation] == "string")
            return functions.GetPrivateProfileString(pointer(Section), pointer(Key), pointer(Text), buffer,
                                                     room, file);
        if (one[Operation] == "names")
            return functions.GetPrivateProfileSectionNames(buffer, room, file);
        return functions.GetPrivateProfileSection(pointer(Section), buffer, room, file);
    });
}

TEST(ProfileCases, TextProfileFunctionsAnswerAsWindowsDoes) {
    const TemporaryFolder folder;
    TextProfileFunctions functions;
    for (const Case& one : ReadCases())
        EXPECT_EQ(Call(functions, one, folder / "case.ini"), one[one.size() > OnWindows ? OnWindows : Answer])
            << testing::PrintToString(one);
}

TEST(ProfileCases, TheSystemAnswersAsRecorded) {
    const TemporaryFolder folder;
    const std::unique_ptr<ProfileFunctions> functions = MakeSystemProfileFunctions();
    if (functions == nullptr)
        GTEST_SKIP() << "this system has no profile functions of its own";
    int number = 0;
    for (const Case& one : ReadCases()) {
        // Each case has its own file, because the system may cache what it has read.
        const std::string answer = Call(*functions, one, folder / (std::to_string(number++) + ".ini"));
        EXPECT_TRUE(answer == one[Answer] || (one.size() > OnWindows && answer == one[OnWindows]))
            << testing::PrintToString(answer) << " for " << testing::PrintToString(one);
    }
}

}  // namespace
}  // namespace tallyhorn
