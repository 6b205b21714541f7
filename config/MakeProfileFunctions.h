#pragma once

#include <memory>

#include "platform/ProfileFunctions.h"

namespace tallyhorn {

/// The system's own profile functions, or those over plain files where the system has none.
std::unique_ptr<ProfileFunctions> MakeProfileFunctions();

}  // namespace tallyhorn
