#pragma once

#include <string_view>

namespace tallyhorn {

/// The version that the build gives the program: major, minor and revision in decimal, with a dot between
/// each two.
std::string_view ProgramVersion();

}  // namespace tallyhorn
