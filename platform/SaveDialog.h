#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// The port for the dialog that asks for the file to save to.  It also asks whether to replace an existing
/// file.  Until the user has answered, other window events run.
class SaveDialog {
public:
    virtual ~SaveDialog() = default;
    /// Returns the file, or nothing if the user cancels.  `fileTypes` has the form
    /// "DESCRIPTION|PATTERN|DESCRIPTION|PATTERN".
    virtual std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                         std::string_view fileTypes) = 0;
};

}  // namespace tallyhorn
