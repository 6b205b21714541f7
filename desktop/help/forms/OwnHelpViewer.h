#pragma once

#include <QPointer>

#include "desktop/help/forms/frmHelp.h"
#include "platform/HelpViewer.h"

namespace tallyhorn {

/// Shows help files in a window of the console, for systems without a viewer.  Has at most one such window.
class OwnHelpViewer final : public HelpViewer {
public:
    ~OwnHelpViewer() override { delete window_.data(); }

    HelpOutcome OpenWinHelp(const Request& request) override;
    HelpOutcome OpenHtmlHelp(const Request& request) override;
    void Close() override;

private:
    QPointer<frmHelp> window_;
};

}  // namespace tallyhorn
