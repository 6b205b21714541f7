#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tallyhorn {

/// What the program's command line asks for.  A plain value.
struct CommandLine {
    enum class Wish { Run, Help, Version, Refuse };

    Wish Asked = Wish::Run;
    std::filesystem::path Folder;  ///< empty: the one that ChooseDataFolder names
    std::string Refusal;           ///< why, where Asked is Refuse
};

/// Reads the arguments after the program's name, in UTF-8, and holds a folder that they name against the file
/// system.
CommandLine ReadCommandLine(const std::vector<std::string>& arguments);

std::string HelpText();

}  // namespace tallyhorn
