#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/OutputFile.h"

namespace tallyhorn {

/// Owns a buffer that combines many small writes to a file into few large ones.  After the first failure
/// nothing more is written.  The file must outlive the writer.  For one thread at a time.
class BufferedWriter {
public:
    static constexpr std::size_t BufferSize = std::size_t{256} << 10U;

    explicit BufferedWriter(OutputFile& file);

    /// Returns false if this or an earlier write failed.
    bool Write(std::string_view bytes);
    /// Writes the buffer, unless an earlier write failed, and then calls Finish of the file.  Returns the
    /// first failure.  Must be called, since the destructor does not write the buffer.
    std::optional<SystemError> Finish();

private:
    bool WriteThrough(std::string_view bytes);
    bool Flush();

    OutputFile& file_;
    std::vector<char> buffer_;
    std::optional<SystemError> failure_;
};

}  // namespace tallyhorn
