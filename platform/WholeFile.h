#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallyhorn {

// Functions that read or write a small file in one call.  Paths are in the byte encoding of the system; see
// NarrowPath.  Safe in any thread.

enum class ReadOutcome { Complete, Missing, Failed };

/// Sets `bytes` to the content of the file.  Returns `Failed` if the file is larger than `maximum` bytes,
/// cannot be read, or is not a regular file.  Does not block if it is a pipe.
ReadOutcome ReadWholeFile(const std::string& path, std::size_t maximum, std::string& bytes);

/// Replaces the file at `path`, or creates it, in one step: other programs always see either the old file or
/// the complete new one, even after a power failure.  On Linux, symbolic links are followed, and the new file
/// has the permissions of the old one.  Returns false and leaves the old file unchanged if it
/// cannot be replaced, for example because it is not writable.  Exception: if the folder does not allow new
/// files, an existing writable file is overwritten in place, and is damaged if that fails.
bool ReplaceWholeFile(const std::string& path, std::string_view bytes);

}  // namespace tallyhorn
