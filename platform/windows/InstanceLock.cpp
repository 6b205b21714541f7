#include "platform/InstanceLock.h"

#include <windows.h>

#include <utility>

#include "platform/windows/OwnedHandle.h"

namespace tallyhorn {

struct InstanceLock::Held {
    explicit Held(HANDLE mutex) : Mutex(mutex) {}
    const OwnedHandle Mutex;
};

InstanceLock::InstanceLock(std::string name, std::string folder)
    : name_(std::move(name)), folder_(std::move(folder)) {}

InstanceLock::~InstanceLock() = default;

bool InstanceLock::Acquire() {
    if (held_ != nullptr)
        return true;
    // Names that begin with "Local\" are visible only in this log-on session.
    HANDLE mutex = CreateMutexA(nullptr, FALSE, ("Local\\" + name_).c_str());
    const DWORD error = GetLastError();
    if (mutex == nullptr)
        return error != ERROR_ACCESS_DENIED;
    auto held = std::make_unique<Held>(mutex);
    if (error == ERROR_ALREADY_EXISTS)
        return false;
    held_ = std::move(held);
    return true;
}

}  // namespace tallyhorn
