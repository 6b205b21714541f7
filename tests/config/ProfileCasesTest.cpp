// Holds the text code against what Wine's profile functions answered (tests/data/make-profile-cases.cpp).

#include <gtest/gtest.h>

#include <fstream>

#include "config/TextProfileFunctions.h"
#include "tests/data/ProfileCase.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

/// A recorded answer that is Wine's own way, with Windows' in its place.
struct Difference {
    std::string Content;
    std::string Operation;
    std::string Windows;
    const char* Reason;
};

const std::vector<Difference> Differences = {
    {"\xEF\xBB\xBF[s]\r\nk=v\r\n", "string", "3:DEF\0"s, "Wine passes over a UTF-8 mark; to ANSI it is text"},
    {"[\xC4]\r\n\xD6=v\r\n", "string", "1:v\0"s, "Wine folds the case of ASCII alone"},
    {"[s]\r\n\x8A\xC4=v\r\n", "string", "1:v\0"s, "Wine folds the case of ASCII alone"},
    {"[s]\r\nk=\r\n", "int", "0", "Wine takes an empty value for a missing one"},
    {"[s]\r\nk=\"\"\r\n", "int", "0", "Wine takes an empty value for a missing one"},
    {"[s]\r\n;k=v\r\n", "string", "3:DEF\0"s, "Wine finds a comment by its text"},
    {"[s]\r\nk=1\r\n\r\n=2\r\n=3\r\n", "section", "10:k=1\0=2\0=3\0\0"s,
     "Wine drops a nameless entry behind another"},
    {"[s]\r\nk=1\r\n[]\r\nx=1\r\n", "write", "1:[s]k=1\0[t]k=v\0"s,
     "Wine's rewriting leaves out a header without a name"},
};

const Difference* FindDifference(const ProfileCase& one) {
    for (const Difference& difference : Differences) {
        if (difference.Content == one.Content && difference.Operation == one.Operation)
            return &difference;
    }
    return nullptr;
}

std::vector<ProfileCase> ReadCases() {
    std::ifstream file(TALLYHORN_TEST_DATA "/profile-cases.tsv", std::ios::binary);
    std::vector<ProfileCase> cases;
    for (std::string line; std::getline(file, line);) {
        const std::optional<ProfileCase> one = ParseCase(line);
        EXPECT_TRUE(one) << line;
        if (one)
            cases.push_back(*one);
    }
    return cases;
}

TEST(ProfileCases, TextCodeAnswersAsWindows) {
    const TemporaryFolder folder;
    TextProfileFunctions functions;
    const std::vector<ProfileCase> cases = ReadCases();
    ASSERT_GT(cases.size(), 300U);
    std::size_t differences = 0;
    for (const ProfileCase& one : cases) {
        const Difference* difference = FindDifference(one);
        if (difference != nullptr) {
            ++differences;
            EXPECT_NE(difference->Windows, one.Answer) << "no difference any more: " << difference->Reason;
        }
        const std::string expected = difference != nullptr ? difference->Windows : one.Answer;
        EXPECT_EQ(Escape(RunCase(functions, one, folder / "case.ini")), Escape(expected)) << FormatCase(one);
    }
    EXPECT_EQ(differences, Differences.size());
}

/// That the recorded answers are still the ones given where they come from.
TEST(ProfileCases, SystemAnswersAsRecorded) {
    const TemporaryFolder folder;
    const std::unique_ptr<ProfileFunctions> functions = MakeSystemProfileFunctions();
    if (functions == nullptr)
        GTEST_SKIP() << "this system has no profile functions of its own";
    int number = 0;
    for (const ProfileCase& one : ReadCases()) {
        const std::string answer = RunCase(*functions, one, folder / (std::to_string(number++) + ".ini"));
        const Difference* difference = FindDifference(one);
        if (difference == nullptr || answer != difference->Windows) {
            EXPECT_EQ(Escape(answer), Escape(one.Answer)) << FormatCase(one);
        }
    }
}

}  // namespace
}  // namespace tallyhorn
