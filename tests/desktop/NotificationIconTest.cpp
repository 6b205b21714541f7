#include <gtest/gtest.h>

#include <map>

#include "desktop/NotificationIcon.h"
#include "tests/support/FakeDesktop.h"

namespace tallyhorn {
namespace {

/// Steps: I initialize, F start the flash, t tick of the timer, S stop the flash, D shut down.  In the
/// results, "+" starts the timer, and "-" stops it.
TEST(NotificationIconTest, StepsChangeTheIconAndTheTimer) {
    const std::pair<std::string, const char*> cases[] = {
        // A second start neither restarts the timer nor changes the order of the pictures.
        {"IFtFtt", "add 0, +, modify 2, modify 1, modify 2"},
        // Each flash begins with picture 2, whether an odd or an even number of ticks came before.
        {"IFtSFt", "add 0, +, modify 2, -, +, modify 2"},
        {"IFttSFt", "add 0, +, modify 2, modify 1, -, +, modify 2"},
        {"IFtSDIFt", "add 0, +, modify 2, -, delete, add 0, +, modify 2"},
        {"IFtIt", "add 0, +, modify 2, add 0, modify 2"},
        // A tick may already be queued when the timer is stopped.
        {"ISt", "add 0, modify 2"},
    };
    std::map<char, void (NotificationIcon::*)()> actions = {{'I', &NotificationIcon::Initialize},
                                                            {'F', &NotificationIcon::StartFlash},
                                                            {'t', &NotificationIcon::TimFlashTick},
                                                            {'S', &NotificationIcon::StopFlash},
                                                            {'D', &NotificationIcon::Shutdown}};
    for (const auto& [steps, calls] : cases) {
        FakeNotificationArea area;
        NotificationIcon icon(area, [&area](bool enabled) { area.Calls.emplace_back(enabled ? "+" : "-"); });
        for (const char step : steps)
            (icon.*actions.at(step))();
        EXPECT_EQ(area.TakeCalls(), calls) << steps;
        EXPECT_EQ(area.Tip, "Tallyhorn Listener Console");
    }
}

}  // namespace
}  // namespace tallyhorn
