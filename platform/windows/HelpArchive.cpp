#include "platform/HelpArchive.h"

namespace tallyhorn {

HelpFiles UnpackHelpFile(const std::filesystem::path& /*file*/) {
    return {};
}

}  // namespace tallyhorn
