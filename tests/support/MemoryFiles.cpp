#include "tests/support/MemoryFiles.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace tallyhorn {
namespace {

const SystemError NoRoom{28, "No space left on device"};
const SystemError NoFile{2, "No such file or directory"};
const SystemError NoRight{13, "Permission denied"};

class MemoryInput final : public InputFile {
public:
    explicit MemoryInput(std::string bytes) : bytes_(std::move(bytes)) {}
    std::size_t Read(std::span<char> buffer) override {
        const std::size_t count = std::min(buffer.size(), bytes_.size() - position_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(position_), count, buffer.begin());
        position_ += count;
        return count;
    }
    void Rewind() override { position_ = 0; }
    bool Failed() const override { return false; }

private:
    const std::string bytes_;
    std::size_t position_ = 0;
};

}  // namespace

class MemoryFiles::Appended final : public AppendFile {
public:
    Appended(MemoryFiles& files, std::shared_ptr<Content> content)
        : files_(files), content_(std::move(content)) {}
    std::optional<SystemError> Write(std::string_view bytes) override {
        return files_.Write(*content_, bytes);
    }
    std::optional<SystemError> Sync() override {
        return files_.Do(false, [this] { content_->Synced = content_->Written; });
    }

private:
    MemoryFiles& files_;
    const std::shared_ptr<Content> content_;
};

class MemoryFiles::Replacement final : public OutputFile {
public:
    Replacement(MemoryFiles& files, std::filesystem::path path) : files_(files), path_(std::move(path)) {}
    std::optional<SystemError> Write(std::string_view bytes) override {
        if (!failure_)
            failure_ = files_.Write(*content_, bytes);
        return failure_;
    }
    std::optional<SystemError> Finish() override {
        if (failure_)
            return failure_;
        return files_.Do(false, [this] {
            content_->Synced = content_->Written;
            files_.names_[path_] = content_;
        });
    }

private:
    MemoryFiles& files_;
    const std::filesystem::path path_;
    const std::shared_ptr<Content> content_ = std::make_shared<Content>();
    std::optional<SystemError> failure_;
};

template <typename Effect>
std::optional<SystemError> MemoryFiles::Do(bool needsRoom, Effect effect) {
    const std::lock_guard lock(mutex_);
    if (stopped_)
        return NoRoom;
    const int operation = Operations++;
    within_ = false;
    if (Kind == Fault::DiskFull && operation >= FailsAt && operation < FailsAt + FullFor && needsRoom)
        return NoRoom;
    if (Kind == Fault::None || Kind == Fault::DiskFull || operation != FailsAt) {
        effect();
        return std::nullopt;
    }
    within_ = Kind == Fault::StopWithin && needsRoom;
    if (Kind == Fault::StopAfter || within_)
        effect();
    stopped_ = true;
    return NoRoom;
}

std::optional<SystemError> MemoryFiles::Write(Content& content, std::string_view bytes) {
    return Do(true, [&] { content.Written += bytes.substr(0, within_ ? bytes.size() / 2 : bytes.size()); });
}

std::shared_ptr<MemoryFiles> MemoryFiles::AfterCrash() const {
    auto files = std::make_shared<MemoryFiles>();
    for (const auto& [path, content] : names_)
        files->Put(path, content->Written);
    return files;
}

std::shared_ptr<MemoryFiles> MemoryFiles::AfterPowerFailure(double unsynced) const {
    auto files = std::make_shared<MemoryFiles>();
    for (const auto& [path, content] : names_) {
        const std::size_t synced = content->Synced.size();
        const auto more = static_cast<std::size_t>(
            static_cast<double>(content->Written.size() - std::min(synced, content->Written.size())) *
            unsynced);
        files->Put(path, content->Written.substr(0, synced + more));
    }
    return files;
}

std::optional<std::string> MemoryFiles::Bytes(const std::filesystem::path& path) const {
    const auto found = names_.find(path);
    return found == names_.end() ? std::nullopt : std::optional(found->second->Written);
}

void MemoryFiles::Put(const std::filesystem::path& path, std::string bytes) {
    auto content = std::make_shared<Content>();
    content->Synced = bytes;
    content->Written = std::move(bytes);
    names_[path] = std::move(content);
}

Files::Opening MemoryFiles::Open(const std::filesystem::path& path, std::unique_ptr<InputFile>& file,
                                 SystemError& error) {
    const std::optional<std::string> bytes = Bytes(path);
    if (!bytes)
        return Opening::Missing;
    if (Unreadable.contains(path)) {
        error = NoRight;
        return Opening::Failed;
    }
    file = std::make_unique<MemoryInput>(*bytes);
    return Opening::Opened;
}

std::unique_ptr<AppendFile> MemoryFiles::OpenToAppend(const std::filesystem::path& path, std::uint64_t kept,
                                                      SystemError& error) {
    std::shared_ptr<Content> content;
    const auto failure = Do(!Bytes(path), [&] {
        std::shared_ptr<Content>& place = names_[path];
        if (place == nullptr)
            place = std::make_shared<Content>();
        place->Written.resize(std::min<std::size_t>(kept, place->Written.size()));
        place->Synced.resize(std::min(place->Synced.size(), place->Written.size()));
        content = place;
    });
    if (failure) {
        error = *failure;
        return nullptr;
    }
    return std::make_unique<Appended>(*this, content);
}

std::unique_ptr<OutputFile> MemoryFiles::CreateReplacement(const std::filesystem::path& path,
                                                           SystemError& error) {
    const bool missing = !Bytes(path);
    const auto failure = Do(true, [] {});
    if (missing || failure) {
        error = missing ? NoFile : *failure;
        return nullptr;
    }
    return std::make_unique<Replacement>(*this, path);
}

std::optional<SystemError> MemoryFiles::Rename(const std::filesystem::path& from,
                                               const std::filesystem::path& to) {
    if (!Bytes(from))
        return NoFile;
    return Do(false, [&] { names_[to] = names_.extract(from).mapped(); });
}

std::optional<SystemError> MemoryFiles::Remove(const std::filesystem::path& path) {
    return Do(false, [&] { names_.erase(path); });
}

std::optional<SystemError> MemoryFiles::KeepAside(const std::filesystem::path& path,
                                                  const std::filesystem::path& aside) {
    if (!Bytes(path) || Bytes(aside))
        return NoFile;
    return Do(true, [&] {
        names_[aside] = std::make_shared<Content>(*names_.at(path));
        if (Unreadable.contains(path))
            names_.erase(path);
    });
}

std::vector<std::filesystem::path> MemoryFiles::PathsBeginningWith(const std::filesystem::path& prefix) {
    std::vector<std::filesystem::path> found;
    for (const auto& [path, content] : names_) {
        if (path.native().starts_with(prefix.native()))
            found.push_back(path);
    }
    return found;
}

}  // namespace tallyhorn
