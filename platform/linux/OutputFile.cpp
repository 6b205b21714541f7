#include "platform/OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {
namespace {

class LinuxOutputFile final : public OutputFile {
public:
    LinuxOutputFile(FileDescriptor file, std::filesystem::path folder)
        : file_(std::move(file)), folder_(std::move(folder)) {}

    std::optional<SystemError> Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t count = write(file_.Get(), bytes.data(), bytes.size());
            if (count > 0)
                bytes.remove_prefix(static_cast<std::size_t>(count));
            else if (count == 0 || errno != EINTR)
                return LastSystemError();
        }
        return std::nullopt;
    }

    std::optional<SystemError> Finish() override {
        if (fsync(file_.Get()) != 0 || !file_.Close())
            return LastSystemError();
        SyncFolder();
        return std::nullopt;
    }

private:
    /// Some file systems cannot, and a folder need not be readable; the content is safe by then.
    void SyncFolder() const {
        const FileDescriptor folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder)
            fsync(folder.Get());
    }

    FileDescriptor file_;
    const std::filesystem::path folder_;
};

}  // namespace

std::unique_ptr<OutputFile> CreateOutputFile(const std::filesystem::path& path, SystemError& error) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file) {
        error = LastSystemError();
        return nullptr;
    }
    return std::make_unique<LinuxOutputFile>(std::move(file),
                                             path.has_parent_path() ? path.parent_path() : ".");
}

std::optional<SystemError> RemoveFile(const std::filesystem::path& path) {
    if (unlink(path.c_str()) == 0)
        return std::nullopt;
    return LastSystemError();
}

}  // namespace tallyhorn
