#include "platform/HelpArchive.h"

namespace tallyhorn {

std::unique_ptr<HelpArchive> OpenHelpArchive(const std::filesystem::path& /*file*/) {
    return nullptr;
}

}  // namespace tallyhorn
