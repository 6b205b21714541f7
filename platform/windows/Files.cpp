#include "platform/Files.h"

#include <windows.h>

#include <utility>

#include "platform/FolderEntries.h"
#include "platform/windows/FileWriting.h"
#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::optional<SystemError> ErrorUnless(bool succeeded) {
    return succeeded ? std::nullopt : std::optional(LastSystemError());
}

class WindowsAppendFile final : public AppendFile {
public:
    explicit WindowsAppendFile(HANDLE file) : file_(file) {}

    /// Removes all bytes after the first `kept`, and makes Write append to those.
    bool Shorten(std::uint64_t kept) {
        if (GetFileType(file_.Get()) != FILE_TYPE_DISK) {
            SetLastError(ERROR_NOT_SUPPORTED);
            return false;
        }
        LARGE_INTEGER size{};
        if (GetFileSizeEx(file_.Get(), &size) == 0)
            return false;
        LARGE_INTEGER end{};
        end.QuadPart = std::cmp_less(size.QuadPart, kept) ? size.QuadPart : static_cast<LONGLONG>(kept);
        return SetFilePointerEx(file_.Get(), end, nullptr, FILE_BEGIN) != 0 && SetEndOfFile(file_.Get()) != 0;
    }

    std::optional<SystemError> Write(std::string_view bytes) override {
        return ErrorUnless(WriteAll(file_.Get(), bytes));
    }
    std::optional<SystemError> Sync() override { return ErrorUnless(FlushFileBuffers(file_.Get()) != 0); }

private:
    const OwnedHandle file_;
};

/// Copies the content and waits until it is on the disk.
bool CopyTo(const fs::path& path, const fs::path& aside) {
    if (CopyFileW(path.c_str(), aside.c_str(), TRUE) == 0)
        return false;
    // A copy has the attributes of the original.  If it is read-only, it cannot be opened to flush it.
    const OwnedHandle copy(
        CreateFileW(aside.c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    return !copy || FlushFileBuffers(copy.Get()) != 0;
}

bool HasAttribute(const fs::path& path, DWORD attribute) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & attribute) != 0;
}

/// Does the work of Files::KeepAside.  Returns false and sets the last error on failure.
bool Preserve(const fs::path& path, const fs::path& aside) {
    const OwnedHandle readable(
        CreateFileW(path.c_str(), GENERIC_READ, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!readable && HasAttribute(path, FILE_ATTRIBUTE_DIRECTORY)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (!readable)
        return MoveFileExW(path.c_str(), aside.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
    // CreateHardLink does not follow symbolic links.
    if (!HasAttribute(path, FILE_ATTRIBUTE_REPARSE_POINT) &&
        CreateHardLinkW(aside.c_str(), path.c_str(), nullptr) != 0)
        return true;
    return CopyTo(path, aside);
}

class WindowsFiles final : public Files {
public:
    Opening Open(const fs::path& path, std::unique_ptr<InputFile>& file, SystemError& error) override {
        file = OpenInputFile(path, error);
        if (file)
            return Opening::Opened;
        return error.Number == ERROR_FILE_NOT_FOUND ? Opening::Missing : Opening::Failed;
    }

    std::unique_ptr<AppendFile> OpenToAppend(const fs::path& path, std::uint64_t kept,
                                             SystemError& error) override {
        const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, ShareAll, nullptr, OPEN_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        auto file = std::make_unique<WindowsAppendFile>(handle);
        if (handle != INVALID_HANDLE_VALUE && file->Shorten(kept))
            return file;
        error = LastSystemError();
        return nullptr;
    }

    std::unique_ptr<OutputFile> CreateReplacement(const fs::path& path, SystemError& error) override {
        return CreateReplacementFile(path, error, OldFile::Required);
    }

    std::optional<SystemError> Rename(const fs::path& from, const fs::path& to) override {
        constexpr DWORD Replacing = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        return ErrorUnless(MoveFileExW(from.c_str(), to.c_str(), Replacing) != 0);
    }

    std::optional<SystemError> Remove(const fs::path& path) override {
        return ErrorUnless(DeleteFileW(path.c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND);
    }

    std::optional<SystemError> KeepAside(const fs::path& path, const fs::path& aside) override {
        return ErrorUnless(Preserve(path, aside));
    }

    std::vector<fs::path> PathsBeginningWith(const fs::path& prefix) override {
        return EntriesBeginningWith(prefix);
    }
};

}  // namespace

std::unique_ptr<Files> MakeFiles() {
    return std::make_unique<WindowsFiles>();
}

}  // namespace tallyhorn
