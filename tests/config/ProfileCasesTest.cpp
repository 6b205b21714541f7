// Compares TextProfileFunctions, and the system's own profile functions if it has some, with the answers that
// Wine's profile functions gave.  To add a case, write a line with any answer; the test of the Windows build
// then shows the right one.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

/// A line of tests/data/profile-cases.tsv, split at its tabs.  "\xHH" stands for a byte, "\null" for a null
/// pointer.
struct ProfileCase {
    enum Field { Content, Operation, Section, Key, Text, Number, Answer, OnWindows, Reason };

    explicit ProfileCase(const std::string& line) {
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '\t');)
            Fields.push_back(field);
        // Only lines in which Wine and Windows differ have the last two fields.
        EXPECT_TRUE(Fields.size() == Answer + 1 || Fields.size() == Reason + 1) << line;
        Fields.resize(Reason + 1);
    }

    std::string Bytes(Field field) const {
        std::string bytes = Fields[field];
        for (std::size_t at = 0; (at = bytes.find("\\x", at)) != std::string::npos; ++at)
            bytes.replace(at, 4, 1, static_cast<char>(std::stoi(bytes.substr(at + 2, 2), nullptr, 16)));
        return bytes;
    }
    const std::string& WindowsAnswer() const {
        return Fields[Fields[OnWindows].empty() ? Answer : OnWindows];
    }

    std::vector<std::string> Fields;
};

std::vector<ProfileCase> ReadCases() {
    std::ifstream file(TALLYHORN_TEST_DATA "/profile-cases.tsv", std::ios::binary);
    std::vector<ProfileCase> cases;
    for (std::string line; std::getline(file, line);)
        cases.emplace_back(line);
    EXPECT_GT(cases.size(), 300U);
    return cases;
}

/// Writes bytes as the lines of the file do.
std::string Escape(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        char code[8] = {byte};
        if (byte < ' ' || byte > '~' || byte == '\\')
            std::snprintf(code, sizeof(code), "\\x%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += code;
    }
    return text;
}

/// The call that one case describes, on a file with the case's content.
class Call {
public:
    Call(ProfileFunctions& functions, const ProfileCase& one, std::string file)
        : functions_(functions), case_(one), file_(std::move(file)) {}

    std::string Answer() {
        WriteBytes(file_, case_.Bytes(ProfileCase::Content));
        const std::string& operation = case_.Fields[ProfileCase::Operation];
        if (operation == "int")
            return std::to_string(functions_.GetPrivateProfileInt(
                section_.Pointer, key_.Pointer, std::stoi(case_.Fields[ProfileCase::Number]), file_.c_str()));
        if (operation == "write") {
            const bool written = functions_.WritePrivateProfileString(section_.Pointer, key_.Pointer,
                                                                      text_.Pointer, file_.c_str());
            return (written ? "1:" : "0:") + Escape(ReadBack());
        }
        // The answer is the count, and the counted bytes with the NUL after them.
        const auto size = static_cast<std::uint32_t>(std::stoul(case_.Fields[ProfileCase::Number]));
        std::string buffer(size + 1, '#');
        std::uint32_t count = 0;
        if (operation == "string")
            count = functions_.GetPrivateProfileString(section_.Pointer, key_.Pointer, text_.Pointer,
                                                       buffer.data(), size, file_.c_str());
        else if (operation == "names")
            count = functions_.GetPrivateProfileSectionNames(buffer.data(), size, file_.c_str());
        else
            count = functions_.GetPrivateProfileSection(section_.Pointer, buffer.data(), size, file_.c_str());
        return std::to_string(count) + ':' + Escape(buffer.substr(0, count + 1));
    }

private:
    static constexpr std::uint32_t Enough = 8192;

    struct Argument {
        Argument(const ProfileCase& one, ProfileCase::Field field) : Text(one.Bytes(field)) {
            if (one.Fields[field] == "\\null")
                Pointer = nullptr;
        }
        std::string Text;
        const char* Pointer = Text.c_str();
    };

    /// Returns the entries before the first header, then the name and the entries of each section.
    std::string ReadBack() {
        std::string names(Enough, '#');
        names.resize(functions_.GetPrivateProfileSectionNames(names.data(), Enough, file_.c_str()));
        std::string result = Entries("");
        for (std::size_t begin = 0; begin < names.size();) {
            const std::string name = names.c_str() + begin;
            begin += name.size() + 1;
            result += '[' + name + ']' + Entries(name);
        }
        return result;
    }
    std::string Entries(const std::string& section) {
        std::string entries(Enough, '#');
        entries.resize(
            functions_.GetPrivateProfileSection(section.c_str(), entries.data(), Enough, file_.c_str()));
        return entries;
    }

    ProfileFunctions& functions_;
    const ProfileCase& case_;
    const std::string file_;
    const Argument section_{case_, ProfileCase::Section};
    const Argument key_{case_, ProfileCase::Key};
    const Argument text_{case_, ProfileCase::Text};
};

TEST(ProfileCases, TextProfileFunctionsAnswerAsWindowsDoes) {
    const TemporaryFolder folder;
    TextProfileFunctions functions;
    for (const ProfileCase& one : ReadCases())
        EXPECT_EQ(Call(functions, one, folder / "case.ini").Answer(), one.WindowsAnswer())
            << testing::PrintToString(one.Fields);
}

TEST(ProfileCases, TheSystemAnswersAsRecorded) {
    const TemporaryFolder folder;
    const std::unique_ptr<ProfileFunctions> functions = MakeSystemProfileFunctions();
    if (functions == nullptr)
        GTEST_SKIP() << "this system has no profile functions of its own";
    int number = 0;
    for (const ProfileCase& one : ReadCases()) {
        // Each case has its own file, because the system may cache what it has read.
        const std::string answer =
            Call(*functions, one, folder / (std::to_string(number++) + ".ini")).Answer();
        if (answer != one.WindowsAnswer()) {
            EXPECT_EQ(answer, one.Fields[ProfileCase::Answer]) << testing::PrintToString(one.Fields);
        }
    }
}

}  // namespace
}  // namespace tallyhorn
