#include "platform/HelpViewer.h"

namespace tallyhorn {

std::unique_ptr<HelpViewer> MakeSystemHelpViewer() {
    return nullptr;
}

}  // namespace tallyhorn
