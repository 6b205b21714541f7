#pragma once

#include <filesystem>
#include <vector>

namespace tallyhorn {

/// Implements Files::PathsBeginningWith on every system.
std::vector<std::filesystem::path> EntriesBeginningWith(const std::filesystem::path& prefix);

}  // namespace tallyhorn
