#pragma once

#include <string_view>

namespace tallyhorn {

/// The message boxes that the rules may show, all under the caption "Tallyhorn Listener Console".
/// Called from the user-interface thread; a call returns when the user has answered, and window
/// events (timer ticks too) run meanwhile.  Texts are ANSI and never read as markup.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// An OK button and no icon.
    virtual void Tell(std::string_view text) = 0;
    /// Exclamation icon and an OK button.
    virtual void Warn(std::string_view text) = 0;
    /// Question icon, Yes and No; true for Yes.
    virtual bool Confirm(std::string_view text) = 0;
    /// Exclamation icon, Retry and Cancel; true for Retry.
    virtual bool Retry(std::string_view text) = 0;
};

}  // namespace tallyhorn
