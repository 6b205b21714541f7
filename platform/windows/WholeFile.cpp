#include "platform/WholeFile.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

#include "platform/windows/FileWriting.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

constexpr DWORD LargestPiece = DWORD{1} << 20U;

std::string TemporaryName(const std::string& path) {
    static std::atomic<unsigned> count{0};
    const std::size_t separator = path.find_last_of("\\/:");
    const std::string folder = separator == std::string::npos ? "" : path.substr(0, separator + 1);
    return folder + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(count++) + ".tmp";
}

bool WriteTemporary(const std::string& temporary, std::string_view bytes) {
    const OwnedHandle file(CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && WriteAll(file.Get(), bytes) && FlushFileBuffers(file.Get()) != 0;
}

/// Overwrites a file in a folder that takes no new file.
bool OverwriteFile(const std::string& path, std::string_view bytes) {
    const OwnedHandle file(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && GetFileType(file.Get()) == FILE_TYPE_DISK && WriteAll(file.Get(), bytes) &&
           SetEndOfFile(file.Get()) != 0 && FlushFileBuffers(file.Get()) != 0;
}

}  // namespace

ReadOutcome ReadWholeFile(const std::string& path, std::size_t maximum, std::string& bytes) {
    bytes.clear();
    const OwnedHandle file(CreateFileA(path.c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return GetLastError() == ERROR_FILE_NOT_FOUND ? ReadOutcome::Missing : ReadOutcome::Failed;
    if (GetFileType(file.Get()) != FILE_TYPE_DISK)
        return ReadOutcome::Failed;
    while (true) {
        const std::size_t filled = bytes.size();
        const DWORD room = static_cast<DWORD>(std::min<std::size_t>(LargestPiece, maximum + 1 - filled));
        bytes.resize(filled + room);
        DWORD count = 0;
        const bool read = ReadFile(file.Get(), bytes.data() + filled, room, &count, nullptr) != 0;
        bytes.resize(filled + count);
        if (!read || bytes.size() > maximum)
            return ReadOutcome::Failed;
        if (count == 0)
            return ReadOutcome::Complete;
    }
}

bool ReplaceWholeFile(const std::string& path, std::string_view bytes) {
    const std::string temporary = TemporaryName(path);
    const bool written = WriteTemporary(temporary, bytes);
    if (!written && GetLastError() == ERROR_ACCESS_DENIED)
        return OverwriteFile(path, bytes);
    const bool replaced = written && MoveFileExA(temporary.c_str(), path.c_str(),
                                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!replaced)
        DeleteFileA(temporary.c_str());
    return replaced;
}

}  // namespace tallyhorn
