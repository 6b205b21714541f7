#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace tallyhorn {

/// Maps the path of each file, as links in the help write it (for example "page.html"), to its content.
using HelpFiles = std::map<std::string, std::string>;

/// Returns the files in a compiled help file (CHM), except those over 1 MiB.  Returns none if `file` is not a
/// regular file, not a CHM file, or damaged, or if its files together exceed 16 MiB.  Always returns none on
/// Windows, which has a viewer for such files.  Safe for untrusted files.
HelpFiles UnpackHelpFile(const std::filesystem::path& file);

}  // namespace tallyhorn
