#include "platform/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileReplacement.h"
#include "platform/linux/FileWriting.h"

namespace tallyhorn {
namespace {

class LinuxOutputFile final : public OutputFile {
public:
    LinuxOutputFile(FileDescriptor file, std::filesystem::path path)
        : file_(std::move(file)), path_(std::move(path)) {}

    std::optional<SystemError> Write(std::string_view bytes) override {
        if (WriteAll(file_.Get(), bytes))
            return std::nullopt;
        return LastSystemError();
    }

    std::optional<SystemError> Finish() override {
        std::optional<SystemError> error;
        if (fsync(file_.Get()) != 0)
            error = LastSystemError();
        if (!file_.Close() && !error)
            error = LastSystemError();
        if (!error)
            SyncFolderOf(path_);
        return error;
    }

private:
    FileDescriptor file_;
    const std::filesystem::path path_;
};

class LinuxReplacementFile final : public OutputFile {
public:
    /// Creates the temporary file.  Returns false on failure; LastSystemError then returns the reason.
    bool Begin(const std::filesystem::path& path, OldFile old) { return replacement_.Begin(path, old); }

    std::optional<SystemError> Write(std::string_view bytes) override {
        if (!failure_ && !replacement_.Write(bytes))
            failure_ = LastSystemError();
        return failure_;
    }

    std::optional<SystemError> Finish() override {
        if (!failure_ && !replacement_.Commit())
            failure_ = LastSystemError();
        return failure_;
    }

private:
    FileReplacement replacement_;
    std::optional<SystemError> failure_;
};

}  // namespace

std::unique_ptr<OutputFile> CreateReplacementFile(const std::filesystem::path& path, SystemError& error,
                                                  OldFile old) {
    auto replacement = std::make_unique<LinuxReplacementFile>();
    if (replacement->Begin(path, old))
        return replacement;
    error = LastSystemError();
    if (error.Number != EACCES)
        return nullptr;
    // A file can be writable although its folder does not allow new files.
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file)
        return nullptr;
    return std::make_unique<LinuxOutputFile>(std::move(file), path);
}

}  // namespace tallyhorn
