#pragma once

#include <functional>
#include <utility>

#include "platform/MessageBoxes.h"
#include "platform/SaveDialog.h"

namespace tallyhorn {

/// Passes the console's questions on to the ports, and reports each time that the user has answered one.
class Questions final : public MessageBoxes, public SaveDialog {
public:
    /// The ports must outlive this object.
    Questions(MessageBoxes& boxes, SaveDialog& files, std::function<void()> answered)
        : boxes_(boxes), files_(files), answered_(std::move(answered)) {}

    void Inform(std::string_view text) override;
    void Warn(std::string_view text) override;
    bool Confirm(std::string_view text) override;
    bool ConfirmErasing(std::string_view text) override;
    bool Retry(std::string_view text) override;
    std::optional<std::filesystem::path> AskFile(const std::filesystem::path& proposal,
                                                 std::string_view fileTypes) override;

private:
    MessageBoxes& boxes_;
    SaveDialog& files_;
    const std::function<void()> answered_;
};

}  // namespace tallyhorn
