#include "app/CommandLine.h"

#include <system_error>

#include "platform/PathText.h"

namespace tallyhorn {
namespace {

CommandLine Refuse(std::string why) {
    return {CommandLine::Wish::Refuse, {}, std::move(why)};
}

/// Returns why the folder cannot be used, or an empty text if it can.
std::string WhyUnreadable(const std::filesystem::path& folder) {
    const std::string name = std::string("'").append(Utf8FromPath(folder)).append("'");
    std::error_code error;
    if (!std::filesystem::exists(folder, error))
        return "the folder " + name + " does not exist";
    if (!std::filesystem::is_directory(folder, error))
        return name + " is not a folder";
    // "/." makes this fail if the user may list the folder but not access the files in it.
    const std::filesystem::directory_iterator first(folder / ".", error);
    return error ? "the folder " + name + " cannot be read: " + error.message() : "";
}

}  // namespace

CommandLine ReadCommandLine(const std::vector<std::string>& arguments) {
    CommandLine line;
    constexpr std::string_view FolderOption = "--folder";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help" || argument == "-h")
            return {CommandLine::Wish::Help, {}, {}};
        if (argument == "--version")
            return {CommandLine::Wish::Version, {}, {}};
        if (argument.starts_with("--folder="))
            line.Folder = PathFromUtf8(argument.substr(FolderOption.size() + 1));
        else if (argument != FolderOption)
            return Refuse("unknown option '" + argument + "'");
        else if (i + 1 == arguments.size())
            return Refuse("--folder needs the name of a folder");
        else
            line.Folder = PathFromUtf8(arguments[++i]);
        if (std::string why = WhyUnreadable(line.Folder); !why.empty())
            return Refuse(std::move(why));
        std::error_code error;
        line.Folder = std::filesystem::absolute(line.Folder, error);
        if (error)
            return Refuse("the current folder does not exist: " + error.message());
    }
    return line;
}

std::string HelpText() {
    return "Usage: tallyhorn-console [--folder DIR] [--help] [--version]\n"
           "Shows the alarms of an event-log monitoring engine as they arrive.\n"
           "\n"
           "  --folder DIR   keep settings, filters and messages in DIR, which must exist (default: the\n"
           "                 program's folder, or the user's data folder if the former is not writable)\n"
           "  --help         print this text and exit\n"
           "  --version      print the version and exit\n";
}

}  // namespace tallyhorn
