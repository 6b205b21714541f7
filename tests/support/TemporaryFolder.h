#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace tallyhorn {

/// Owns a new, empty folder and removes it with its contents.
class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("tallyhorn-" + std::to_string(std::random_device{}()) +
                 std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    const std::filesystem::path path_;
};

}  // namespace tallyhorn
