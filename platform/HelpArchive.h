#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace tallyhorn {

/// The contents of the files by their paths, written as in links of the help: "page.html".
using HelpFiles = std::map<std::string, std::string>;

/// Returns the files in a compiled help file (CHM), without those over 1 MiB.  Returns none if the files
/// exceed 16 MiB together, if `file` is not a regular file, not such an archive, or damaged, and always on
/// Windows, which has a viewer.  Safe for untrusted files.
HelpFiles UnpackHelpFile(const std::filesystem::path& file);

}  // namespace tallyhorn
