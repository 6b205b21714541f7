#pragma once

#include <string>
#include <string_view>

namespace tallyhorn {

/// UserDataFolder as the Linux desktops define it, from the values of XDG_DATA_HOME and HOME and the home
/// folder of the account.  Relative paths count as missing; returns an empty text if all three are.
std::string DesktopDataFolder(std::string_view data, std::string_view home, std::string_view accountHome);

}  // namespace tallyhorn
