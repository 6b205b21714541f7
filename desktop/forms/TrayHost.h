#pragma once

namespace tallyhorn {

/// The functions of the console that the notification-area icon calls.
class TrayHost {
public:
    virtual ~TrayHost() = default;
    /// Shows the main window, maximised or in its previous state, and its detail and help windows in front of
    /// other programs.
    virtual void ShowMainWindow(bool maximized) = 0;
    /// Shows the hidden main window again without giving it the focus.
    virtual void UncoverMainWindow() = 0;
    /// Returns whether the main window is hidden, so that the user can reach it only by the icon.
    virtual bool IsMainWindowHidden() const = 0;
    virtual void LetEventsRun() = 0;

    virtual void ToggleSound() = 0;
    virtual void AskForAbout() = 0;
    virtual void AskForHelp() = 0;
    /// Closes the console without asking the user.
    virtual void Leave() = 0;
};

}  // namespace tallyhorn
