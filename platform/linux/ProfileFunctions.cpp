#include "platform/ProfileFunctions.h"

namespace tallyhorn {

std::unique_ptr<ProfileFunctions> MakeSystemProfileFunctions() {
    return nullptr;
}

}  // namespace tallyhorn
