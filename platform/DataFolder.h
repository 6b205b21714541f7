#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/SystemError.h"

namespace tallyhorn {

// The folders of the console's files.  The program folder contains the installed files; the data folder
// contains the user's files (settings, filters, backups).  They are the same folder if the user may create
// files in the program folder.

/// Returns the data folder.  That is `program`, the program folder, if the user may create files there, and
/// otherwise a folder below UserDataFolder, which need not exist yet.  Returns an empty path if
/// UserDataFolder does.
std::filesystem::path ChooseDataFolder(const std::filesystem::path& program);

/// Creates the folder and its missing parents with access for this user only.  Also returns an error if the
/// folder exists but the user may not create files in it.
std::optional<SystemError> MakeDataFolder(const std::filesystem::path& folder);

/// Returns the path of the regular file `name` in the first of the folders that has one, or an empty path.
/// No file is opened, since opening a pipe could block forever.
std::filesystem::path FindOwnFile(const std::vector<std::filesystem::path>& folders, const std::string& name);

/// Returns whether the user may create files in the folder, without creating one.  If not, LastSystemError
/// returns the reason.
bool MayWriteInto(const std::filesystem::path& folder);

/// Returns the folder in which programs create a folder each for the user's data, for example ~/.local/share.
/// Returns an empty path if the system has none.
std::filesystem::path UserDataFolder();

/// Creates one folder with access for this user only.  Its parent must exist.  Returns false on failure, for
/// example if anything exists at that path.
bool MakePrivateFolder(const std::filesystem::path& folder);

/// Returns the path in the byte encoding of the system, as the profile functions require.  On Windows, if the
/// code page lacks a character of the path, the folder is replaced by its 8.3 short name, if it has one.
std::string NarrowPath(const std::filesystem::path& path);

}  // namespace tallyhorn
