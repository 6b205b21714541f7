#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tallyhorn {

/// The system's own dialog that asks for the name of a file to write; it also asks whether an existing file
/// may be replaced.  Called from the user-interface thread; returns when the user has answered, and window
/// events run meanwhile.
class SaveDialog {
public:
    virtual ~SaveDialog() = default;
    /// `fileTypes` is a list of "DESCRIPTION|PATTERN" pairs joined by "|".  Nothing where the user cancels.
    virtual std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                         std::string_view fileTypes) = 0;
};

}  // namespace tallyhorn
