#include "platform/DataFolder.h"

#include <shlobj.h>
#include <windows.h>

#include "platform/PathText.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

/// Converts to the ANSI code page.  Returns an empty text if that lacks one of the characters.
std::string ToAnsi(const std::wstring& text) {
    const int size = static_cast<int>(text.size());
    BOOL lacking = FALSE;
    std::string ansi(2 * text.size(), '\0');
    const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.c_str(), size, ansi.data(),
                                           static_cast<int>(ansi.size()), nullptr, &lacking);
    ansi.resize(lacking == FALSE ? static_cast<std::size_t>(length) : 0);
    return ansi;
}

/// Returns the 8.3 short name, which is ASCII, or an empty text if the volume has none.
std::wstring ShortName(const std::filesystem::path& folder) {
    std::wstring name(GetShortPathNameW(folder.c_str(), nullptr, 0), L'\0');
    const DWORD length = GetShortPathNameW(folder.c_str(), name.data(), static_cast<DWORD>(name.size()));
    name.resize(length < name.size() ? length : 0);
    return name;
}

}  // namespace

bool MayWriteInto(const std::filesystem::path& folder) {
    const DWORD kind = GetFileAttributesW(folder.c_str());
    if (kind == INVALID_FILE_ATTRIBUTES)
        return false;
    if ((kind & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        SetLastError(ERROR_DIRECTORY);
        return false;
    }
    const OwnedHandle opened(CreateFileW(folder.c_str(), FILE_ADD_FILE,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return static_cast<bool>(opened);
}

std::filesystem::path UserDataFolder() {
    PWSTR path = nullptr;
    const bool known = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &path) == S_OK;
    std::filesystem::path folder = known ? path : L"";
    CoTaskMemFree(path);
    return folder;
}

bool MakePrivateFolder(const std::filesystem::path& folder) {
    // The folder is in the user's profile and inherits its access rights.
    return CreateDirectoryW(folder.c_str(), nullptr) != 0;
}

std::string NarrowPath(const std::filesystem::path& path) {
    if (GetACP() == CP_UTF8)
        return Utf8FromPath(path);
    if (std::string ansi = ToAnsi(path.wstring()); !ansi.empty())
        return ansi;
    // Only the folder is replaced by its short name, since the file may not exist yet.
    const std::filesystem::path folder = ShortName(path.parent_path());
    return folder.empty() ? Utf8FromPath(path) : ToAnsi((folder / path.filename()).wstring());
}

}  // namespace tallyhorn
