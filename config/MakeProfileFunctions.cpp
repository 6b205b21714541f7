#include "config/MakeProfileFunctions.h"

#include <utility>

#include "config/TextProfileFunctions.h"

namespace tallyhorn {

std::unique_ptr<ProfileFunctions> MakeProfileFunctions() {
    std::unique_ptr<ProfileFunctions> system = MakeSystemProfileFunctions();
    return system != nullptr ? std::move(system) : std::make_unique<TextProfileFunctions>();
}

}  // namespace tallyhorn
