#include <gtest/gtest.h>

#include "desktop/NotificationIcon.h"
#include "tests/support/FakeNotificationArea.h"

namespace tallyhorn {
namespace {

/// Steps: I initialize, F start flash, t the timer's tick, S stop flash, D shut down.
TEST(NotificationIconTest, DoesWhatEachStepSays) {
    const struct {
        const char* Steps;
        const char* Calls;
        const char* Timer;  ///< + started, - stopped
        int RecordImage;
    } cases[] = {
        {"I", "add 0", "", 0},
        {"IF", "add 0", "+", 0},
        {"IFttt", "add 0, modify 2, modify 1, modify 2", "+", 2},
        // A second start neither starts the timer anew nor changes the order of the pictures.
        {"IFtFt", "add 0, modify 2, modify 1", "+", 1},
        // A stop leaves the icon as it is, on picture 2 here, though the record says 1.
        {"IFtS", "add 0, modify 2", "+-", 1},
        {"IFttSFt", "add 0, modify 2, modify 1, modify 2", "+-+", 2},
        {"IS", "add 0", "", 1},
        {"IFtSD", "add 0, modify 2, delete", "+-", 1},
        {"IFtSDI", "add 0, modify 2, delete, add 0", "+-", 0},
        // Added anew in the middle of a flash, it goes on from the first picture of the flash.
        {"IFtIt", "add 0, modify 2, add 0, modify 2", "+", 2},
        // Without a timer that is stopped there is no tick, but one may be on its way.
        {"ISt", "add 0, modify 2", "", 2},
    };
    for (const auto& [steps, calls, timer, recordImage] : cases) {
        FakeNotificationArea area;
        std::string timerLog;
        NotificationIcon icon(area, [&timerLog](bool enabled) { timerLog += enabled ? '+' : '-'; });
        for (const char step : std::string(steps)) {
            switch (step) {
                case 'I':
                    icon.Initialize();
                    break;
                case 'F':
                    icon.StartFlash();
                    break;
                case 't':
                    icon.TimFlashTick();
                    break;
                case 'S':
                    icon.StopFlash();
                    break;
                default:
                    icon.Shutdown();
            }
        }
        EXPECT_EQ(area.TakeCalls(), calls) << steps;
        EXPECT_EQ(timerLog, timer) << steps;
        EXPECT_EQ(icon.RecordImage(), recordImage) << steps;
        EXPECT_EQ(area.Tip, "Tallyhorn Listener Console");
    }
}

}  // namespace
}  // namespace tallyhorn
