#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/OutputFile.h"

namespace tallyhorn {

/// Owns the buffer before a file that is written in many small pieces; the first failure ends all writing.
/// Called from one thread at a time; the file must outlive it.
class BufferedWriter {
public:
    static constexpr std::size_t BufferSize = std::size_t{256} << 10U;

    explicit BufferedWriter(OutputFile& file);

    /// False from the first failure on.
    bool Write(std::string_view bytes);
    /// Writes what waits and finishes the file, after a failure too; returns the first failure.  Without it
    /// what waits is lost.
    std::optional<SystemError> Finish();

private:
    bool WriteThrough(std::string_view bytes);
    bool Flush();

    OutputFile& file_;
    std::vector<char> buffer_;
    std::optional<SystemError> failure_;
};

}  // namespace tallyhorn
