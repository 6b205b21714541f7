#pragma once

#include <filesystem>
#include <memory>

#include "platform/ByteSource.h"

namespace tallyhorn {

/// Owns one open regular file.  It is read up to the size that it had when it was opened, so that a program
/// that keeps appending cannot make reading endless.  For one thread at a time.
class InputFile : public ByteSource {
public:
    /// Makes the next read begin at the start of the file.
    virtual void Rewind() = 0;
};

/// Opens the file, and creates an empty one if it does not exist.  Returns null if that fails or `path` is
/// not a regular file.  Does not block if `path` is a pipe.
std::unique_ptr<InputFile> OpenInputFile(const std::filesystem::path& path);

}  // namespace tallyhorn
