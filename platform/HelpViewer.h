#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tallyhorn {

enum class HelpOutcome {
    Shown,
    NoFile,   ///< there is no such file
    BadFile,  ///< it is no help file, or damaged
    NoViewer  ///< nothing here shows files of this kind
};

/// What shows help files in a window of its own that nobody waits for.  User-interface thread only.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;

    struct Request {
        std::filesystem::path File;
        unsigned Command = 0;      ///< of the viewer's own numbering
        unsigned Context = 0;      ///< the number of a page
        std::uintptr_t Owner = 0;  ///< the main window, as the window system knows it
    };
    /// For files of the older kind.
    virtual HelpOutcome OpenWinHelp(const Request& request) = 0;
    /// For compiled HTML.
    virtual HelpOutcome OpenHtmlHelp(const Request& request) = 0;
    /// Takes its window away, if there is one.
    virtual void Close() = 0;
};

/// The system's own viewer.  Null where systems of this kind have none: the console's own takes its place.
std::unique_ptr<HelpViewer> MakeSystemHelpViewer();

}  // namespace tallyhorn
