#pragma once

#include <filesystem>
#include <string_view>

namespace tallyhorn {

// What all writing of files shares.  Safe in any thread.

/// Hands all the bytes to the system; false where it fails, for a reason that LastSystemError tells.
bool WriteAll(int file, std::string_view bytes);

/// Makes the name of the file at `path` last.  Some file systems cannot, and a folder need not be readable;
/// the content is safe by then.
void SyncFolderOf(const std::filesystem::path& path);

}  // namespace tallyhorn
