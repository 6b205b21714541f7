#pragma once

#include <functional>
#include <string_view>

namespace tallyhorn {

/// The desktop's notification area and the one icon that the console has in it.
/// Called from the user-interface thread, which the events come to as well; nothing here lets events run.
class NotificationArea {
public:
    struct Events {
        /// What opens the program: a double click, or what the area has in its place.
        std::function<void()> DoubleClick = [] {};
        /// The right button was let go over the icon.  An area that shows the icon's menu by itself never
        /// tells.
        std::function<void()> MenuWanted = [] {};
    };

    virtual ~NotificationArea() = default;
    /// Tells what happens at the icon from now on.
    virtual void Listen(Events events) = 0;
    /// Whether there is an area that shows the icon, or would.  It may go and come at any time without a
    /// word, so whoever depends on it asks again; an icon that was added meanwhile appears at the latest with
    /// the question that finds an area.
    virtual bool IsAvailable() = 0;
    /// Adds the icon, or gives the one that is there another picture and tip.
    virtual void Add(int image, std::string_view tip) = 0;
    /// Does nothing where no icon was added.
    virtual void Modify(int image, std::string_view tip) = 0;
    virtual void Delete() = 0;
};

}  // namespace tallyhorn
