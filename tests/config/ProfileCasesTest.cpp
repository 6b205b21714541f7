// Holds the text code, and the system's own profile functions where it has some, against what those of Wine
// answered.  For a new case write a line with any answer and take what the Windows build's failure shows.

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "config/TextProfileFunctions.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

/// A line of tests/data/profile-cases.tsv, cut at its tabs.  "\xHH" stands for a byte, "\null" for no text.
struct ProfileCase {
    enum Field { Content, Operation, Section, Key, Text, Number, Answer, OnWindows, Reason };

    explicit ProfileCase(const std::string& line) {
        Fields.emplace_back();
        for (const char character : line) {
            if (character == '\t')
                Fields.emplace_back();
            else
                Fields.back() += character;
        }
        // The last two only where Wine has ways of its own.
        if (Fields.size() != Answer + 1 && Fields.size() != Reason + 1)
            ADD_FAILURE() << line;
        Fields.resize(Reason + 1);
    }

    std::string Bytes(Field field) const {
        const std::string& text = Fields[field];
        std::string bytes;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const bool code = text[i] == '\\';
            bytes +=
                code ? static_cast<char>(std::strtoul(text.substr(i + 2, 2).c_str(), nullptr, 16)) : text[i];
            i += code ? 3 : 0;
        }
        return bytes;
    }
    std::int32_t Value() const { return std::stoi(Fields[Number]); }
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

/// As the lines spell it.
std::string Escape(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 8> code{byte};
        if (byte < ' ' || byte > '~' || byte == '\\')
            std::snprintf(code.data(), code.size(), "\\x%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += code.data();
    }
    return text;
}

/// One case's call on a file of its content.
class Call {
public:
    Call(ProfileFunctions& functions, const ProfileCase& one, std::string file)
        : functions_(functions), case_(one), file_(std::move(file)) {}

    std::string Answer() {
        WriteBytes(file_, case_.Bytes(ProfileCase::Content));
        const std::string& operation = case_.Fields[ProfileCase::Operation];
        if (operation == "int")
            return std::to_string(functions_.GetPrivateProfileInt(section_.Pointer, key_.Pointer,
                                                                  case_.Value(), file_.c_str()));
        if (operation == "write") {
            const bool written = functions_.WritePrivateProfileString(section_.Pointer, key_.Pointer,
                                                                      text_.Pointer, file_.c_str());
            return (written ? "1:" : "0:") + Escape(ReadBack());
        }
        // The bytes up to and with the NUL behind those that are counted.
        const auto size = static_cast<std::uint32_t>(case_.Value());
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

    /// What stands before the first section, then every section's name with its entries.
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

TEST(ProfileCases, TextCodeAnswersAsWindows) {
    const TemporaryFolder folder;
    TextProfileFunctions functions;
    for (const ProfileCase& one : ReadCases())
        EXPECT_EQ(Call(functions, one, folder / "case.ini").Answer(), one.WindowsAnswer())
            << testing::PrintToString(one.Fields);
}

/// That the recorded answers are still the ones given where they come from.
TEST(ProfileCases, SystemAnswersAsRecorded) {
    const TemporaryFolder folder;
    const std::unique_ptr<ProfileFunctions> functions = MakeSystemProfileFunctions();
    if (functions == nullptr)
        GTEST_SKIP() << "this system has no profile functions of its own";
    int number = 0;
    for (const ProfileCase& one : ReadCases()) {
        // A file of its own for each, since the system may keep what it read of the last.
        const std::string answer =
            Call(*functions, one, folder / (std::to_string(number++) + ".ini")).Answer();
        if (answer != one.WindowsAnswer()) {
            EXPECT_EQ(answer, one.Fields[ProfileCase::Answer]) << testing::PrintToString(one.Fields);
        }
    }
}

}  // namespace
}  // namespace tallyhorn
