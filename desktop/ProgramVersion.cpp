#include "desktop/ProgramVersion.h"

namespace tallyhorn {

std::string_view ProgramVersion() {
    return TALLYHORN_VERSION;
}

}  // namespace tallyhorn
