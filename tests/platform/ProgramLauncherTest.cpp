#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/ProgramLauncher.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

constexpr const char* Program = "show-arguments";

bool Appears(const std::filesystem::path& file) {
    return Eventually([&file] { return std::filesystem::exists(file); });
}

TEST(ProgramLauncherTest, PassesEachArgumentUnchanged) {
    const std::vector<std::string> arguments = {
        "LON-DC-1",
        "PC ( 3 Events )",
        "a b  c",
        "",
        R"(quote " and \" and \\" and \)",
        R"(ends in \\)",
        "$(touch x) `id` ; & | > y < z * ? ~ # ! ' %PATH% ^&",
        "<b>bold</b> %s %n",
        "tab\tand\r\nlines",
        std::string(6000, 'x') + " end",
    };
    const TemporaryFolder folder;
    const auto programs = MakeProgramLauncher(TALLYHORN_PROGRAMS);
    std::vector<std::string> words{folder / "seen"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    ASSERT_TRUE(programs->Start(Program, words));
    ASSERT_TRUE(Appears(folder / "seen"));
    std::string expected;
    for (const std::string& argument : arguments)
        expected += argument + '\0';
    EXPECT_EQ(ReadBytes(folder / "seen"), expected);
    EXPECT_EQ(CountFiles(folder.Path()), 1U) << "no shell ran the arguments";

    words = {folder / "cut", std::string("before\0behind", 13), "next"};
    ASSERT_TRUE(programs->Start(Program, words));
    ASSERT_TRUE(Appears(folder / "cut"));
    EXPECT_EQ(ReadBytes(folder / "cut"), std::string("before\0next\0", 12));
}

TEST(ProgramLauncherTest, SearchesOnlyTheGivenFolders) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(TALLYHORN_PROGRAMS);
    const std::vector<std::string> words{folder / "seen"};
    EXPECT_FALSE(MakeProgramLauncher(folder.Path().string())->Start(Program, words));
    EXPECT_FALSE(MakeProgramLauncher(".")->Start(Program, words));
    std::filesystem::current_path(before);
    WriteBytes(folder / "text", "not a program");
    std::filesystem::create_directory(folder / "eventvwr");
    for (const char* const name : {"text", "eventvwr"})
        EXPECT_FALSE(MakeProgramLauncher(folder.Path().string())->Start(name, words)) << name;
    EXPECT_FALSE(std::filesystem::exists(folder / "seen"));
}

}  // namespace
}  // namespace tallyhorn
