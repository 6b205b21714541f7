#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace tallyhorn {

/// Contents by name, written as in links within the help: "page.html".
using HelpFiles = std::map<std::string, std::string>;

/// The files that a compiled help file (CHM) holds, as far as they are of bounded size and number.  None for
/// what is no regular file, no such archive, or damaged; always none on systems that bring a viewer of their
/// own.  Safe in any thread; the file may hold anything.
HelpFiles UnpackHelpFile(const std::filesystem::path& file);

}  // namespace tallyhorn
