#pragma once

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <string>

namespace tallyhorn {

/// What the system's list of accounts tells of a user in one of its texts; empty where it has no such user.
/// Any thread.
inline std::string AccountText(uid_t user, char* passwd::*text) {
    std::array<char, 16384> memory;
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(user, &entry, memory.data(), memory.size(), &found);
    return found != nullptr ? found->*text : "";
}

}  // namespace tallyhorn
