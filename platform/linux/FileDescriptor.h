#pragma once

#include <unistd.h>

#include <utility>

namespace tallyhorn {

/// Owns one open file descriptor, or none (-1), and closes it.  Movable.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { Close(); }

    int Get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    /// Closes the descriptor.  Returns false if the system reports, only now, that an earlier write failed.
    bool Close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || close(descriptor) == 0;
    }

private:
    int descriptor_ = -1;
};

}  // namespace tallyhorn
