#include "platform/DataFolder.h"

#include <system_error>

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr const char* FolderName = "tallyhorn-console";

bool IsFolder(const fs::path& path) {
    std::error_code none;
    return fs::is_directory(path, none);
}

/// Creates the folder and its missing parents.  Also succeeds if another program creates one of them at the
/// same time.
std::optional<SystemError> MakeFolders(const fs::path& folder) {
    if (IsFolder(folder))
        return std::nullopt;
    const fs::path above = folder.parent_path();
    if (!above.empty() && above != folder) {
        if (std::optional<SystemError> error = MakeFolders(above))
            return error;
    }
    if (MakePrivateFolder(folder))
        return std::nullopt;
    const SystemError error = LastSystemError();
    return IsFolder(folder) ? std::nullopt : std::optional(error);
}

}  // namespace

fs::path ChooseDataFolder(const fs::path& program) {
    if (MayWriteInto(program))
        return program;
    const fs::path data = UserDataFolder();
    return data.empty() ? data : data / FolderName;
}

std::optional<SystemError> MakeDataFolder(const fs::path& folder) {
    if (std::optional<SystemError> error = MakeFolders(folder))
        return error;
    return MayWriteInto(folder) ? std::nullopt : std::optional(LastSystemError());
}

fs::path FindOwnFile(const std::vector<fs::path>& folders, const std::string& name) {
    for (const fs::path& folder : folders) {
        std::error_code none;
        if (fs::is_regular_file(folder / name, none))
            return folder / name;
    }
    return {};
}

}  // namespace tallyhorn
