#pragma once

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <string>

namespace tallyhorn {

/// Returns one text of the user's entry in the account database, for example `&passwd::pw_dir`.  Returns an
/// empty text if there is no such user.  Safe in any thread.
inline std::string AccountText(uid_t user, char* passwd::*text) {
    std::array<char, 16384> memory;
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(user, &entry, memory.data(), memory.size(), &found);
    return found != nullptr ? found->*text : "";
}

}  // namespace tallyhorn
