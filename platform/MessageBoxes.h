#pragma once

#include <string_view>

namespace tallyhorn {

/// The port for message boxes, all with the caption "Tallyhorn Listener Console".  A call returns when the
/// user has answered; until then other window events and timers run.  Texts are Windows-1252 and never
/// interpreted as markup.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// Shows an OK button and no icon.
    virtual void Inform(std::string_view text) = 0;
    /// Shows an exclamation icon and an OK button.
    virtual void Warn(std::string_view text) = 0;
    /// Shows a question icon, Yes and No.  Returns true for Yes.
    virtual bool Confirm(std::string_view text) = 0;
    /// Shows what Confirm shows, but with No as the default button, so that Return erases nothing.
    virtual bool ConfirmErasing(std::string_view text) = 0;
    /// Shows an exclamation icon, Retry and Cancel.  Returns true for Retry.
    virtual bool Retry(std::string_view text) = 0;
};

}  // namespace tallyhorn
