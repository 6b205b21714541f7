#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/SystemError.h"

namespace tallyhorn {

// The folders that the console's own files lie in: the program's, with what came with it, and the one for
// what its user makes.  Holds nothing; called from the user-interface thread.

/// The program's folder where the user may write there, else a folder of the console's own below
/// UserDataFolder, which need not exist; empty where there is no such place.
std::filesystem::path ChooseDataFolder(const std::filesystem::path& program);

/// Makes the folder, and those above it that are missing, for this user alone.  A failure where it stands
/// already but may not be written, too.
std::optional<SystemError> MakeDataFolder(const std::filesystem::path& folder);

/// The first regular file of that name in the folders, which are asked in their order; empty where there is
/// none.  It is not opened: something that is no regular file might never answer.
std::filesystem::path FindOwnFile(const std::vector<std::filesystem::path>& folders, const std::string& name);

/// Whether this user may make files in the folder; nothing is written to find out.  Where not,
/// LastSystemError tells why.
bool MayWriteInto(const std::filesystem::path& folder);

/// Where programs keep the user's data, each in a folder of its own; empty where the system knows no place.
std::filesystem::path UserDataFolder();

/// One folder below one that exists, for this user alone; false where anything stands there.
bool MakePrivateFolder(const std::filesystem::path& folder);

/// The path as the profile functions take it: bytes in the system's own encoding.  Where that lacks a
/// character of the path, its folder goes by the short name that the system may have for it.
std::string NarrowPath(const std::filesystem::path& path);

}  // namespace tallyhorn
