#include "platform/InstanceLock.h"

#define NOMINMAX 1
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <utility>

namespace tallyhorn {

struct InstanceLock::Held {
    HANDLE Mutex;
    explicit Held(HANDLE mutex) : Mutex(mutex) {}
    ~Held() { CloseHandle(Mutex); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
};

InstanceLock::InstanceLock(std::string name, std::string folder)
    : name_(std::move(name)), folder_(std::move(folder)) {}

InstanceLock::~InstanceLock() = default;

bool InstanceLock::Acquire() {
    if (held_ != nullptr)
        return true;
    // "Local\" is the log-on session's own name space.
    HANDLE mutex = CreateMutexA(nullptr, FALSE, ("Local\\" + name_).c_str());
    const bool taken = GetLastError() == ERROR_ALREADY_EXISTS;
    if (mutex == nullptr)
        return GetLastError() != ERROR_ACCESS_DENIED;
    if (taken) {
        CloseHandle(mutex);
        return false;
    }
    held_ = std::make_unique<Held>(mutex);
    return true;
}

}  // namespace tallyhorn
