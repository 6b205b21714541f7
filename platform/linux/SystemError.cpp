#include "platform/SystemError.h"

#include <cerrno>
#include <cstring>

namespace tallyhorn {

SystemError LastSystemError() {
    const int number = errno;
    // Unlike those of strerror, these texts are not translated, and so are ASCII.
    const char* const text = strerrordesc_np(number);
    return {number, text != nullptr ? text : "Unknown error"};
}

}  // namespace tallyhorn
