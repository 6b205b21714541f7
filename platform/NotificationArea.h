#pragma once

#include <functional>
#include <string_view>

namespace tallyhorn {

/// The port for the notification area of the desktop, in which the console has one icon.
class NotificationArea {
public:
    struct Events {
        /// Called when the user activates the icon: by a double click, or by what the desktop uses instead.
        std::function<void()> DoubleClick = [] {};
        /// Called when the right button is released over the icon.  Never called if the desktop shows the
        /// icon's menu itself.
        std::function<void()> MenuWanted = [] {};
    };

    virtual ~NotificationArea() = default;
    /// Sets the functions to call for events of the icon.
    virtual void Listen(Events events) = 0;
    /// Returns whether a notification area exists.  The area can disappear and reappear at any time without
    /// an event, so call this function each time before relying on it.  An icon that was added while there
    /// was no area appears at the latest when IsAvailable next returns true.
    virtual bool IsAvailable() = 0;
    /// Adds the icon, or changes its picture and tool tip if it was already added.
    virtual void Add(int image, std::string_view tip) = 0;
    /// Changes the picture and tool tip.  Does nothing if no icon was added.
    virtual void Modify(int image, std::string_view tip) = 0;
    virtual void Delete() = 0;
};

}  // namespace tallyhorn
