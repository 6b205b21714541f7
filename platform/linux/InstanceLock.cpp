#include "platform/InstanceLock.h"

#include <utility>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/MailslotFolder.h"

namespace tallyhorn {

struct InstanceLock::Held {
    FileDescriptor Lock;
};

InstanceLock::InstanceLock(std::string name, std::string folder)
    : name_(std::move(name)), folder_(folder.empty() ? UserMailslotFolder() : std::move(folder)) {}

InstanceLock::~InstanceLock() = default;

bool InstanceLock::Acquire() {
    if (held_ != nullptr || !PrepareMailslotFolder(folder_))
        return true;
    bool reachable = false;
    FileDescriptor lock = TakeLock(folder_ + "/.instance-" + name_, reachable);
    if (!lock)
        return !reachable;
    held_ = std::make_unique<Held>(Held{std::move(lock)});
    return true;
}

}  // namespace tallyhorn
