#include "desktop/help/forms/OwnHelpViewer.h"

#include <system_error>
#include <utility>

namespace tallyhorn {

HelpOutcome OwnHelpViewer::OpenWinHelp(const Request& /*request*/) {
    return HelpOutcome::NoViewer;
}

/// If the window is already open, it continues to show its file even if the request names another one.
HelpOutcome OwnHelpViewer::OpenHtmlHelp(const Request& request) {
    std::error_code error;
    if (window_ == nullptr) {
        if (!std::filesystem::exists(request.File, error))
            return HelpOutcome::NoFile;
        std::unique_ptr<const HelpBook> book = HelpBook::Open(request.File);
        if (book == nullptr)
            return HelpOutcome::BadFile;
        window_ = new frmHelp(std::move(book));
    }
    window_->ShowContext(request.Context, request.Owner);
    return HelpOutcome::Shown;
}

void OwnHelpViewer::Close() {
    if (window_ != nullptr)
        window_->close();
}

}  // namespace tallyhorn
