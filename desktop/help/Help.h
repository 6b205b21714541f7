#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <utility>

#include "desktop/help/HelpContexts.h"
#include "platform/HelpViewer.h"
#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Opens pages of the program's help file in the viewer, and explains failures in message boxes.
class Help {
public:
    /// The viewer and the boxes must outlive this object.
    Help(HelpViewer& viewer, MessageBoxes& boxes) : viewer_(viewer), boxes_(boxes) {}

    /// Sets the function that returns the path of the help file, or an empty one if there is none.  It is
    /// called each time, so that a file that was put back is found.  If the name ends in "HLP", it is a
    /// WinHelp file, otherwise a compiled HTML help file.
    void SetHelpFile(std::function<std::filesystem::path()> find) { findHelpFile_ = std::move(find); }

    /// Opens the page, or, if that fails, a message box that says why.  Does nothing while such a box is
    /// open.  `owner` is the native handle of the main window.
    void ShowHelp(HelpContext context, std::uintptr_t owner);

private:
    HelpViewer& viewer_;
    MessageBoxes& boxes_;
    std::function<std::filesystem::path()> findHelpFile_;
    bool explaining_ = false;
};

}  // namespace tallyhorn
