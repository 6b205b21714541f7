#pragma once

#include <string>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

// The folder that contains the user's mailslots as sockets, and their lock files, whose names begin with a
// dot.  Lock files are never removed: another process could be locking the file at the moment of its removal,
// and would then hold a lock that nobody else can see.

/// Returns `$XDG_RUNTIME_DIR/mailslot`, or `/tmp/mailslot-UID` if that variable is not set.
std::string UserMailslotFolder();

/// Creates the folder if it does not exist; its parent must exist.  Returns what IsPrivateFolder then
/// returns.
bool PrepareMailslotFolder(const std::string& folder);
/// Returns whether the folder belongs to this user and nobody else may enter it.
bool IsPrivateFolder(const std::string& folder);

/// Locks the file at `path`, which it creates if necessary, until the returned descriptor is closed.  Returns
/// an empty descriptor if the file cannot be opened (`reachable` is then false) or another process has locked
/// it (`reachable` is then true).
FileDescriptor TakeLock(const std::string& path, bool& reachable);

}  // namespace tallyhorn
