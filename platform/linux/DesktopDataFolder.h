#pragma once

#include <string>
#include <string_view>

namespace tallyhorn {

/// Returns the user's data folder as the Linux desktops define it.  `data` is the value of XDG_DATA_HOME,
/// `home` that of HOME, and `accountHome` the home folder of the account.  A relative path counts as missing.
/// Returns an empty text if all three are missing.
std::string DesktopDataFolder(std::string_view data, std::string_view home, std::string_view accountHome);

}  // namespace tallyhorn
