#include "platform/SystemError.h"

#include <cerrno>
#include <cstring>

namespace tallyhorn {

SystemError LastSystemError() {
    const int number = errno;
    // Unlike strerror's, these texts are ASCII whatever language the user has.
    const char* const text = strerrordesc_np(number);
    return {number, text != nullptr ? text : "Unknown error"};
}

}  // namespace tallyhorn
