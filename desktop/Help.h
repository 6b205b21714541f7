#pragma once

#include <cstdint>
#include <filesystem>

#include "desktop/HelpContexts.h"
#include "platform/HelpViewer.h"
#include "platform/MessageBoxes.h"

namespace tallyhorn {

/// Knows the program's help file and has its pages shown.  User-interface thread only.
class Help {
public:
    /// Both outlive this.
    Help(HelpViewer& viewer, MessageBoxes& boxes) : viewer_(viewer), boxes_(boxes) {}

    /// "THListen.CHM" in the console's folder, or in the program's own where only that has one.
    void SetHelpFile(const std::filesystem::path& folder, const std::filesystem::path& programFolder);
    /// For help in a file of another name.
    void SetHelpFile(const std::filesystem::path& file) { helpFile_ = file; }
    const std::filesystem::path& HelpFile() const { return helpFile_; }

    /// Opens the page, or a message box that says why it does not.
    void ShowHelp(HelpContext context, std::uintptr_t owner);

private:
    HelpViewer& viewer_;
    MessageBoxes& boxes_;
    std::filesystem::path helpFile_;
};

}  // namespace tallyhorn
