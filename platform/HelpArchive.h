#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tallyhorn {

/// The files that one compiled help file (CHM) holds.  Called from one thread at a time; the file may hold
/// anything.
class HelpArchive {
public:
    virtual ~HelpArchive() = default;
    /// The whole content of the file `name`, which is written as in links within the archive.  Nothing where
    /// there is none, where it has more than `maximum` bytes, and where it cannot be unpacked.
    virtual std::optional<std::string> Read(const std::string& name, std::size_t maximum) = 0;
};

/// Null for what is no regular file, and for one that is no such archive; always on systems that bring a
/// viewer of their own.
std::unique_ptr<HelpArchive> OpenHelpArchive(const std::filesystem::path& file);

}  // namespace tallyhorn
