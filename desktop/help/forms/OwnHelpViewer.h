#pragma once

#include <QPointer>

#include "desktop/help/forms/frmHelp.h"
#include "platform/HelpViewer.h"

namespace tallyhorn {

/// The console's own help window, for systems that bring none; one at a time.  User-interface thread only.
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
