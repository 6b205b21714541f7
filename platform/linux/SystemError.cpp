#include "platform/SystemError.h"

#include <cerrno>
#include <cstring>

namespace tallyhorn {

SystemError LastSystemError() {
    const int number = errno;
    // These texts, unlike those of strerror, are not translated, and are therefore ASCII.
    const char* const text = strerrordesc_np(number);
    return {number, text != nullptr ? text : "Unknown error"};
}

}  // namespace tallyhorn
