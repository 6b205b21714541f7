#pragma once

#include <sys/socket.h>

namespace tallyhorn {

/// Returns an address of any family in the form that bind and connect accept.
template <typename Address>
const sockaddr* AsSockaddr(const Address& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace tallyhorn
