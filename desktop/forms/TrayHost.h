#pragma once

namespace tallyhorn {

/// What the notification-area icon asks of the console.  User-interface thread only.
class TrayHost {
public:
    virtual ~TrayHost() = default;
    /// Shows the main window in front, maximised or as it was, with all that belongs to it.
    virtual void ShowMainWindow(bool maximized) = 0;
    /// Brings a hidden window back without taking the keyboard from what the user is doing.
    virtual void UncoverMainWindow() = 0;
    /// Whether the window is hidden to the notification area.
    virtual bool IsMainWindowHidden() const = 0;
    virtual void LetEventsRun() = 0;

    virtual void ToggleSound() = 0;
    virtual void AskForAbout() = 0;
    virtual void AskForHelp() = 0;
    /// Closes the console without a question.
    virtual void Leave() = 0;
};

}  // namespace tallyhorn
