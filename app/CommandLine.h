#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tallyhorn {

/// What the program's command line asks for.
struct CommandLine {
    enum class Wish { Run, Help, Version, Refuse };

    Wish Asked = Wish::Run;
    std::filesystem::path Folder;  ///< if empty, the folder that ChooseDataFolder returns is used
    std::string Refusal;           ///< the reason, if Asked is Refuse
};

/// Reads the arguments after the program's name, in UTF-8, and checks that a folder named there can be read.
CommandLine ReadCommandLine(const std::vector<std::string>& arguments);

std::string HelpText();

}  // namespace tallyhorn
