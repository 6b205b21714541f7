#pragma once

namespace tallyhorn {

/// What the notification-area icon needs from the console.
class TrayHost {
public:
    virtual ~TrayHost() = default;
    /// Shows the main window and its detail and help windows in front, maximised or in its former state.
    virtual void ShowMainWindow(bool maximized) = 0;
    /// Shows a hidden main window again without giving it the focus.
    virtual void UncoverMainWindow() = 0;
    /// Returns whether the main window is hidden, so that only the icon is left of it.
    virtual bool IsMainWindowHidden() const = 0;
    virtual void LetEventsRun() = 0;

    virtual void ToggleSound() = 0;
    virtual void AskForAbout() = 0;
    virtual void AskForHelp() = 0;
    /// Closes the console without a question.
    virtual void Leave() = 0;
};

}  // namespace tallyhorn
