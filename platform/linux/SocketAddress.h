#pragma once

#include <sys/socket.h>

namespace tallyhorn {

/// The address of any family in the form that bind and connect take.
template <typename Address>
const sockaddr* AsSockaddr(const Address& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace tallyhorn
