#include "platform/windows/WindowsReplacementFile.h"

#include <windows.h>

#include <atomic>

#include "platform/windows/FileWriting.h"

namespace tallyhorn {
namespace {

constexpr int MostAttempts = 100;

/// Returns the path of the file with all links resolved, or an empty text if the file system cannot resolve
/// them.
std::wstring FinalPath(HANDLE file) {
    std::wstring path(GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
    const DWORD length =
        GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), FILE_NAME_NORMALIZED);
    path.resize(length < path.size() ? length : 0);
    return path;
}

/// Returns a path in the folder of `path`, since a rename cannot move a file to another volume.  The name is
/// short, so that the result does not exceed the system's limit for paths.
std::wstring TemporaryName(const std::wstring& path) {
    static std::atomic<unsigned> count{0};
    const std::size_t separator = path.find_last_of(L"\\/:");
    const std::wstring folder = separator == std::wstring::npos ? L"" : path.substr(0, separator + 1);
    return folder + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(count++) + L".tmp";
}

}  // namespace

WindowsReplacementFile::~WindowsReplacementFile() {
    file_.reset();
    if (!temporary_.empty())
        DeleteFileW(temporary_.c_str());
}

std::optional<SystemError> WindowsReplacementFile::Begin(const std::filesystem::path& path,
                                                         OldFile required) {
    if (std::optional<SystemError> error = FindTarget(path, required))
        return error;
    return CreateTemporary();
}

std::optional<SystemError> WindowsReplacementFile::FindTarget(const std::filesystem::path& path,
                                                              OldFile required) {
    target_ = path.wstring();
    const OwnedHandle old(CreateFileW(target_.c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!old) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND && required == OldFile::Optional)
            return std::nullopt;
        return LastSystemError();
    }
    if (GetFileType(old.Get()) != FILE_TYPE_DISK) {
        SetLastError(ERROR_NOT_SUPPORTED);
        return LastSystemError();
    }
    exists_ = true;
    if (const std::wstring final = FinalPath(old.Get()); !final.empty())
        target_ = final;
    return std::nullopt;
}

/// Creates the file with an unused name.  Files with some of the names may be left over from a crash.
std::optional<SystemError> WindowsReplacementFile::CreateTemporary() {
    for (int i = 0; i < MostAttempts; ++i) {
        const std::wstring name = TemporaryName(target_);
        file_ = std::make_unique<OwnedHandle>(
            CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (*file_) {
            temporary_ = name;
            return std::nullopt;
        }
        if (GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    return LastSystemError();
}

std::optional<SystemError> WindowsReplacementFile::Write(std::string_view bytes) {
    if (!failure_ && !WriteAll(file_->Get(), bytes))
        failure_ = LastSystemError();
    return failure_;
}

std::optional<SystemError> WindowsReplacementFile::Finish() {
    if (!failure_)
        failure_ = TakePlace();
    return failure_;
}

std::optional<SystemError> WindowsReplacementFile::TakePlace() {
    if (FlushFileBuffers(file_->Get()) == 0)
        return LastSystemError();
    file_->Close();
    // ReplaceFile keeps the permissions of the old file.  On file systems that do not support ReplaceFile, a
    // rename replaces the old file.
    constexpr DWORD Ignored = REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
    const bool replaced =
        exists_ && ReplaceFileW(target_.c_str(), temporary_.c_str(), nullptr, Ignored, nullptr, nullptr) != 0;
    if (!replaced && MoveFileExW(temporary_.c_str(), target_.c_str(),
                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
        return LastSystemError();
    temporary_.clear();
    return std::nullopt;
}

}  // namespace tallyhorn
