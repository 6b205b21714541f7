#include "platform/FolderEntries.h"

#include <system_error>

namespace tallyhorn {

std::vector<std::filesystem::path> EntriesBeginningWith(const std::filesystem::path& prefix) {
    namespace fs = std::filesystem;
    const fs::path::string_type start = prefix.filename().native();
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator entry(prefix.parent_path(), error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().filename().native().starts_with(start))
            found.push_back(entry->path());
    }
    return found;
}

}  // namespace tallyhorn
