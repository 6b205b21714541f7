#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

namespace tallyhorn::test {

/// A folder of its own for one test, gone with everything in it at the end.
/// Used by the test's thread.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("tallyhorn-config-" + std::to_string(random()) + "-" + std::to_string(random()));
        if (!std::filesystem::create_directory(path_))
            throw std::runtime_error("the folder is there already");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace tallyhorn::test
