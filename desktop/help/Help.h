#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

#include "desktop/help/HelpContexts.h"
#include "platform/HelpViewer.h"
#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Opens pages of the program's help file in the viewer, and explains failures in message boxes.
class Help {
public:
    /// Both must outlive this object.
    Help(HelpViewer& viewer, MessageBoxes& boxes) : viewer_(viewer), boxes_(boxes) {}

    /// A name that ends in "HLP" means a file for WinHelp; any other means compiled HTML.
    void SetHelpFile(std::filesystem::path file) { helpFile_ = std::move(file); }

    /// Opens the page, or a message box that says why that failed.  Does nothing while such a box is open.
    /// `owner` is the main window, as the window system knows it.
    void ShowHelp(HelpContext context, std::uintptr_t owner);

private:
    HelpViewer& viewer_;
    MessageBoxes& boxes_;
    std::filesystem::path helpFile_;
    bool explaining_ = false;
};

}  // namespace tallyhorn
