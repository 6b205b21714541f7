#pragma once

#include <filesystem>
#include <memory>

#include "platform/ByteSource.h"

namespace tallyhorn {

/// Owns one regular file that is read from its start, no further than its size when it was opened: who
/// appends to it meanwhile cannot make it endless.  Called from one thread at a time.
class InputFile : public ByteSource {
public:
    /// The next read begins at the start again.
    virtual void Rewind() = 0;
};

/// Creates an empty file where nothing stands.  Null where that fails, where the file may not be read, and
/// for what is no regular file, which is never waited for.
std::unique_ptr<InputFile> OpenInputFile(const std::filesystem::path& path);

}  // namespace tallyhorn
