#pragma once

#include <filesystem>
#include <memory>

#include "platform/ByteSource.h"
#include "platform/SystemError.h"

namespace tallyhorn {

/// Owns one open regular file.  It is read up to the size that it had when it was opened, so that a program
/// that keeps appending cannot make reading endless.  For one thread at a time.
class InputFile : public ByteSource {
public:
    /// Makes the next read begin at the start of the file.
    virtual void Rewind() = 0;
    /// Returns whether a read has failed, so that not all bytes of the file were returned.
    virtual bool Failed() const = 0;
};

/// Opens a regular file.  Returns null and sets `error` on failure.  Does not block if `path` is a pipe,
/// which is an error.
std::unique_ptr<InputFile> OpenInputFile(const std::filesystem::path& path, SystemError& error);

}  // namespace tallyhorn
