#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

#include "desktop/help/HelpContexts.h"
#include "platform/HelpViewer.h"
#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Knows the program's help file and has its pages shown.  User-interface thread only.
class Help {
public:
    /// Both outlive this.
    Help(HelpViewer& viewer, MessageBoxes& boxes) : viewer_(viewer), boxes_(boxes) {}

    /// The end of its name tells which kind of help it holds.
    void SetHelpFile(std::filesystem::path file) { helpFile_ = std::move(file); }

    /// Opens the page, or a message box that says why it does not; nothing while that box stands open.
    void ShowHelp(HelpContext context, std::uintptr_t owner);

private:
    HelpViewer& viewer_;
    MessageBoxes& boxes_;
    std::filesystem::path helpFile_;
    bool explaining_ = false;
};

}  // namespace tallyhorn
