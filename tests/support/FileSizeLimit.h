#pragma once

#include <cstddef>

#if !TALLYHORN_WINE
#include <sys/resource.h>

#include <csignal>
#endif

namespace tallyhorn {

#if TALLYHORN_WINE

/// Wine has no such limit.
struct FileSizeLimit {
    explicit FileSizeLimit(std::size_t /*bytes*/) {}
    bool IsInForce() const { return false; }
};

#else

/// Makes writing beyond so many bytes of any file fail, as on a full disk, as long as it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t bytes) : signalBefore_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        inForce_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signalBefore_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    bool IsInForce() const { return inForce_; }

private:
    void (*const signalBefore_)(int);
    rlimit before_{};
    bool inForce_ = false;
};

#endif

}  // namespace tallyhorn
