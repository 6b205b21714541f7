#pragma once

#include <cstdint>

namespace tallyhorn {

/// Owns one handle of the system and closes it; null and INVALID_HANDLE_VALUE both stand for none.
/// Stays where it was made, safe in any one thread.
class OwnedHandle {
public:
    /// A HANDLE; that name needs a header which stays out of headers of ours.
    explicit OwnedHandle(void* handle) : handle_(handle) {}
    ~OwnedHandle() { Close(); }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;

    /// There is none from then on.
    void Close();
    void* Get() const { return handle_; }
    explicit operator bool() const;
    /// Handles have 32 significant bits on every Windows.
    std::int32_t Number() const;

private:
    void* handle_;
};

}  // namespace tallyhorn
