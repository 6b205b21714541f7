#include "platform/MailslotTransport.h"

namespace tallyhorn {

std::optional<std::string_view> MailslotNameFromPath(std::string_view path) {
    if (!path.starts_with(MailslotPrefix))
        return std::nullopt;
    const std::string_view name = path.substr(MailslotPrefix.size());
    constexpr std::string_view Separators("/\\\0", 3);
    if (name.empty() || name.front() == '.' || name.find_first_of(Separators) != std::string_view::npos)
        return std::nullopt;
    return name;
}

}  // namespace tallyhorn
