#pragma once

#include <unistd.h>

namespace tallyhorn {

/// Root ignores permissions, so a test that runs as root acts as the user "nobody" during the object's life.
class PlainUser {
public:
    PlainUser() {
        if (before_ == 0 && seteuid(Nobody) != 0)
            _exit(1);
    }
    ~PlainUser() {
        if (seteuid(before_) != 0)
            _exit(1);
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    static constexpr uid_t Nobody = 65534;

    const uid_t before_ = geteuid();
};

}  // namespace tallyhorn
