#pragma once

#include <filesystem>
#include <string_view>

namespace tallyhorn {

/// Writes all the bytes.  Returns false if that fails; LastSystemError returns the reason.
bool WriteAll(int file, std::string_view bytes);

/// Makes the name of the file at `path` survive a power failure.  Errors are ignored: some file systems
/// cannot do that, the folder may be unreadable, and the content is already on the disk.
void SyncFolderOf(const std::filesystem::path& path);

}  // namespace tallyhorn
