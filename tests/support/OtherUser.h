#pragma once

#if !TALLYHORN_WINE
#include <unistd.h>
#endif

namespace tallyhorn {

#if TALLYHORN_WINE

/// There is no other user to become.
struct OtherUser {
    OtherUser() {}
};

#else

/// Lets a test that runs as root, for whom no permission counts, act as a plain user as long as it lives.
class OtherUser {
public:
    OtherUser() {
        if (before_ == 0 && seteuid(Nobody) != 0)
            _exit(1);
    }
    ~OtherUser() {
        if (seteuid(before_) != 0)
            _exit(1);
    }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;

private:
    static constexpr uid_t Nobody = 65534;

    const uid_t before_ = geteuid();
};

#endif

}  // namespace tallyhorn
