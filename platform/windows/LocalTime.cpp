#include "platform/LocalTime.h"

namespace tallyhorn {

std::tm LocalTime(std::time_t moment) {
    std::tm parts{};
    localtime_s(&parts, &moment);
    return parts;
}

}  // namespace tallyhorn
