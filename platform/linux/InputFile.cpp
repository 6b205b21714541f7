#include "platform/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {
namespace {

class LinuxInputFile final : public InputFile {
public:
    LinuxInputFile(FileDescriptor file, off_t size) : file_(std::move(file)), size_(size) {}

    std::size_t Read(std::span<char> buffer) override {
        const std::size_t wanted = std::min(buffer.size(), static_cast<std::size_t>(size_ - position_));
        ssize_t count = 0;
        do
            count = pread(file_.Get(), buffer.data(), wanted, position_);
        while (count < 0 && errno == EINTR);
        failed_ = failed_ || count < 0;
        if (count <= 0)
            return 0;
        position_ += count;
        return static_cast<std::size_t>(count);
    }
    void Rewind() override { position_ = 0; }
    bool Failed() const override { return failed_; }

private:
    const FileDescriptor file_;
    const off_t size_;
    off_t position_ = 0;
    bool failed_ = false;
};

}  // namespace

std::unique_ptr<InputFile> OpenInputFile(const std::filesystem::path& path, SystemError& error) {
    // If the file is a pipe, O_NONBLOCK prevents `open` from waiting for its other end.
    FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (file && fstat(file.Get(), &status) == 0) {
        if (S_ISREG(status.st_mode))
            return std::make_unique<LinuxInputFile>(std::move(file), status.st_size);
        errno = S_ISDIR(status.st_mode) ? EISDIR : EOPNOTSUPP;
    }
    error = LastSystemError();
    return nullptr;
}

}  // namespace tallyhorn
