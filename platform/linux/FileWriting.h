#pragma once

#include <filesystem>
#include <string_view>

namespace tallyhorn {

/// Writes all the bytes.  Returns false on failure; LastSystemError then returns the reason.
bool WriteAll(int file, std::string_view bytes);

/// Makes the name of the file at `path` survive a power failure.  Errors are ignored, since the content is
/// already on the disk, some file systems do not support this, and the folder may be unreadable.
void SyncFolderOf(const std::filesystem::path& path);

}  // namespace tallyhorn
