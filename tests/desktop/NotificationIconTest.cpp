#include <gtest/gtest.h>

#include "desktop/NotificationIcon.h"
#include "tests/support/FakeNotificationArea.h"

namespace tallyhorn {
namespace {

/// Steps: I initialize, F start the flash, t tick of the timer, S stop the flash, D shut down.
TEST(NotificationIconTest, StepsChangeTheIconAndTheTimer) {
    const struct {
        const char* Steps;
        const char* Calls;
        const char* Timer;  ///< + started, - stopped
    } cases[] = {
        {"IFttt", "add 0, modify 2, modify 1, modify 2", "+"},
        // A second start neither restarts the timer nor changes the order of the pictures.
        {"IFtFt", "add 0, modify 2, modify 1", "+"},
        // A stop leaves the icon as it is.
        {"IFtS", "add 0, modify 2", "+-"},
        {"IS", "add 0", ""},
        // Each flash begins with picture 2, after an odd and an even number of ticks.
        {"IFtSFt", "add 0, modify 2, modify 2", "+-+"},
        {"IFttSFtSFt", "add 0, modify 2, modify 1, modify 2, modify 2", "+-+-+"},
        {"IFtSDIFt", "add 0, modify 2, delete, add 0, modify 2", "+-+"},
        {"IFtIt", "add 0, modify 2, add 0, modify 2", "+"},
        // A tick may already be queued when the timer is stopped.
        {"ISt", "add 0, modify 2", ""},
    };
    for (const auto& [steps, calls, timer] : cases) {
        FakeNotificationArea area;
        std::string timerLog;
        NotificationIcon icon(area, [&timerLog](bool enabled) { timerLog += enabled ? '+' : '-'; });
        for (const char step : std::string_view(steps)) {
            if (step == 'I')
                icon.Initialize();
            else if (step == 'F')
                icon.StartFlash();
            else if (step == 't')
                icon.TimFlashTick();
            else if (step == 'S')
                icon.StopFlash();
            else
                icon.Shutdown();
        }
        EXPECT_EQ(area.TakeCalls(), calls) << steps;
        EXPECT_EQ(timerLog, timer) << steps;
        EXPECT_EQ(area.Tip, "Tallyhorn Listener Console");
    }
}

}  // namespace
}  // namespace tallyhorn
