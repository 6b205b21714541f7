#pragma once

#include <string>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

// The folder that holds the user's mailslots as sockets, and the locks beside them.  Lock files start with a
// dot and stay behind, empty of meaning, when their holder ends: removing one would race with the next
// holder.

/// `$XDG_RUNTIME_DIR/mailslot`, or `/tmp/mailslot-UID` where that variable is not set.
std::string UserMailslotFolder();

/// Makes the folder (its parent must exist) unless it is there; false where it is not a folder of this user's
/// own that nobody else may enter.
bool PrepareMailslotFolder(const std::string& folder);
bool IsPrivateFolder(const std::string& folder);

/// Takes the lock file at `path` for as long as the descriptor is open; an empty one where another holds it.
/// `reachable` tells whether the file could be opened at all.
FileDescriptor TakeLock(const std::string& path, bool& reachable);

}  // namespace tallyhorn
