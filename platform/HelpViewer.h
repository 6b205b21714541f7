#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tallyhorn {

enum class HelpOutcome {
    Shown,
    NoFile,   ///< the file does not exist
    BadFile,  ///< the file is damaged, or not a help file
    NoViewer  ///< no viewer for this kind of file is installed
};

/// The port for the viewer of help files.  The viewer has its own window, and no function waits for that
/// window to be closed.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;

    struct Request {
        std::filesystem::path File;
        unsigned Command = 0;      ///< a HELP_ constant for OpenWinHelp, an HH_ constant for OpenHtmlHelp
        unsigned Context = 0;      ///< the number of the page to show
        std::uintptr_t Owner = 0;  ///< the handle of the console's main window
    };
    /// Shows a WinHelp file (.hlp).
    virtual HelpOutcome OpenWinHelp(const Request& request) = 0;
    /// Shows a compiled HTML help file (.chm).
    virtual HelpOutcome OpenHtmlHelp(const Request& request) = 0;
    /// Closes the viewer's window, if it is open.
    virtual void Close() = 0;
};

/// Returns the viewer of the system, or null on Linux, which has none: there the console shows the help
/// itself.
std::unique_ptr<HelpViewer> MakeSystemHelpViewer();

}  // namespace tallyhorn
