#pragma once

namespace tallyhorn {

/// The pages of the help file by the numbers under which the program asks for them.  The help file is made
/// from this list: `docs/help/THListen.hhp` names the page of each.
enum class HelpContext : unsigned {
    Contents = 1,
    MainWindow = 10,
    Tree = 20,
    Details = 30,
    FilterManager = 40,
    FilterEditor = 50,
    ViewFilter = 60,
    Preferences = 70,
    NotificationArea = 80,
    About = 90,
    FirstSteps = 100,
    Arrival = 110,
    Files = 120,
    Troubles = 130,
};

/// The property of a window, or of a part of one, that holds the number of its page; the innermost counts.
constexpr const char* HelpContextProperty = "helpContext";

constexpr unsigned HelpNumber(HelpContext context) {
    return static_cast<unsigned>(context);
}

}  // namespace tallyhorn
