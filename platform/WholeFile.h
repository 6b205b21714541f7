#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallyhorn {

// Small files, read and replaced in one piece.  Paths are in the system's own narrow form.  Safe in any
// thread; failures come back as results, and nothing throws but an allocation.

enum class ReadOutcome { Complete, Missing, Failed };

/// Fills `bytes` with the file's content.  `Failed` for a file of more than `maximum` bytes, for what is no
/// regular file (which is never waited for), and for one that is there and cannot be read.
ReadOutcome ReadWholeFile(const std::string& path, std::size_t maximum, std::string& bytes);

/// Puts a file with this content in the place of `path` in one step, so that others see the old file or the
/// whole new one, after a power failure too.  The permissions stay, and a symbolic link keeps pointing to the
/// file (Linux).  False leaves the old file as it was, and nothing beside it; a file that may not be written
/// is such a failure.
bool ReplaceWholeFile(const std::string& path, std::string_view bytes);

}  // namespace tallyhorn
