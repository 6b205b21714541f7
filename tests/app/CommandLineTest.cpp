#include <gtest/gtest.h>

#include <fstream>

#include "app/CommandLine.h"
#include "platform/PathText.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

TEST(CommandLine, RunsHelpsOrRefuses) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    using Wish = CommandLine::Wish;
    const struct {
        std::vector<std::string> Arguments;
        Wish Asked;
        std::string Said;
    } cases[] = {
        {{}, Wish::Run, ""},
        {{"--folder", Utf8FromPath(folder.Path())}, Wish::Run, ""},
        {{"--folder=" + Utf8FromPath(folder.Path())}, Wish::Run, ""},
        {{"--help"}, Wish::Help, ""},
        {{"--version"}, Wish::Version, ""},
        {{"--fodler", "x"}, Wish::Refuse, "unknown option '--fodler'"},
        {{"x"}, Wish::Refuse, "unknown option 'x'"},
        {{"--folder"}, Wish::Refuse, "--folder needs the name of a folder"},
        {{"--folder", Utf8FromPath(folder / "none")}, Wish::Refuse, "does not exist"},
        {{"--folder", Utf8FromPath(folder / "file")}, Wish::Refuse, "is not a folder"},
        {{"--folder="}, Wish::Refuse, "does not exist"},
    };
    for (const auto& [arguments, asked, said] : cases) {
        const CommandLine line = ReadCommandLine(arguments);
        EXPECT_EQ(line.Asked, asked) << said;
        EXPECT_NE(line.Refusal.find(said), std::string::npos) << line.Refusal;
        EXPECT_EQ(line.Refusal.empty(), asked != Wish::Refuse);
    }
}

TEST(CommandLine, RefusesADeletedCurrentFolder) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path deleted = folder / "deleted";
    std::filesystem::create_directory(deleted);
    std::filesystem::current_path(deleted);
    std::error_code refused;
    std::filesystem::remove(deleted, refused);  // Windows does not allow it
    const CommandLine line = ReadCommandLine({"--folder", "."});
    std::filesystem::current_path(before);
    EXPECT_EQ(line.Refusal.find("the current folder does not exist") == 0, !refused) << line.Refusal;
}

}  // namespace
}  // namespace tallyhorn
