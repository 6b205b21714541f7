#include <gtest/gtest.h>

#include "platform/ProgramLauncher.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr const char* Program = "show-arguments";

TEST(ProgramLauncherTest, PassesEachArgumentUnchangedUpToANull) {
    const std::vector<std::string> arguments = {"LON-DC-1",
                                                "PC ( 3 Events )",
                                                "a b  c",
                                                "",
                                                R"(quote " and \" and \\" and \)",
                                                R"(ends in \\)",
                                                "$(touch x) `id` ; & | > y < z * ? ~ # ! ' %PATH% ^&",
                                                "<b>bold</b> %s %n",
                                                "tab\tand\r\nlines",
                                                std::string(6000, 'x') + " end",
                                                std::string("cut at\0a null", 13)};
    const TemporaryFolder folder;
    std::vector<std::string> words{folder / "seen"};
    std::string expected;
    for (const std::string& argument : arguments) {
        words.push_back(argument);
        expected += argument.substr(0, argument.find('\0')) + '\0';
    }
    ASSERT_TRUE(MakeProgramLauncher(TALLYHORN_PROGRAMS)->Start(Program, words));
    ASSERT_TRUE(Eventually([&] { return fs::exists(folder / "seen"); }));
    EXPECT_EQ(ReadBytes(folder / "seen"), expected);
    EXPECT_EQ(CountFiles(folder.Path()), 1U) << "no shell ran the arguments";
}

TEST(ProgramLauncherTest, SearchesOnlyTheGivenFolders) {
    const TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(TALLYHORN_PROGRAMS);
    const std::vector<std::string> words{folder / "seen"};
    EXPECT_FALSE(MakeProgramLauncher(".")->Start(Program, words));
    WriteBytes(folder / "text", "not a program");
    fs::create_directory(folder / "eventvwr");
    for (const char* const name : {Program, "text", "eventvwr"})
        EXPECT_FALSE(MakeProgramLauncher(folder.Path().string())->Start(name, words)) << name;
    fs::current_path(before);
    EXPECT_FALSE(fs::exists(folder / "seen"));
}

}  // namespace
}  // namespace tallyhorn
