#include "config/TextProfileFunctions.h"

namespace tallyhorn {

std::unique_ptr<ProfileFunctions> MakeProfileFunctions() {
    return std::make_unique<TextProfileFunctions>();
}

}  // namespace tallyhorn
