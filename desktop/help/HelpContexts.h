#pragma once

namespace tallyhorn {

/// The numbers of the pages in the help file.  `docs/help/compile-help` reads them from this list;
/// `docs/help/THListen.hhp` maps each number to its page.
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

/// The property of a widget that holds the number of its help page.  If widgets are nested, the innermost one
/// with this property determines the page.
constexpr const char* HelpContextProperty = "helpContext";

constexpr unsigned HelpNumber(HelpContext context) {
    return static_cast<unsigned>(context);
}

}  // namespace tallyhorn
