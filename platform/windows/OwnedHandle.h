#pragma once

#include <cstdint>

namespace tallyhorn {

/// Owns one HANDLE and closes it.  Null and INVALID_HANDLE_VALUE both mean that there is none.
class OwnedHandle {
public:
    /// The parameter is a HANDLE, a name that only windows.h defines.
    explicit OwnedHandle(void* handle) : handle_(handle) {}
    ~OwnedHandle() { Close(); }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;

    /// Closes the handle; after that there is none.
    void Close();
    void* Get() const { return handle_; }
    explicit operator bool() const;
    /// Returns the handle as a number; only 32 bits of a handle are significant, also on 64-bit Windows.
    std::int32_t Number() const;

private:
    void* handle_;
};

}  // namespace tallyhorn
