#pragma once

#include <cstdint>

namespace tallyhorn {

/// Owns one HANDLE and closes it.  Null and INVALID_HANDLE_VALUE both mean that it owns none.
class OwnedHandle {
public:
    /// `handle` is a HANDLE, a type that only windows.h defines.
    explicit OwnedHandle(void* handle) : handle_(handle) {}
    ~OwnedHandle() { Close(); }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;

    /// Closes the handle.  The object then owns none.
    void Close();
    void* Get() const { return handle_; }
    explicit operator bool() const;
    /// Returns the handle as a number; only 32 bits of a handle are significant, even on 64-bit Windows.
    std::int32_t Number() const;

private:
    void* handle_;
};

}  // namespace tallyhorn
