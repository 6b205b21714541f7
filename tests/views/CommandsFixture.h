#pragma once

#include <gtest/gtest.h>

#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeWindow.h"
#include "views/MessageCommands.h"

namespace tallyhorn {

/// The commands over empty lists and a window in memory.
class CommandsFixture : public ::testing::Test {
protected:
    FakeClock clock_;
    FakePendingEvents events_;
    FakeDisplay display_;
    FakeMessageBoxes boxes_;
    FakeViewFilter filter_;
    TimeSlices slices_{clock_, events_};
    ReceivedMessages received_{display_, slices_};
    MessageCommands commands_{received_, display_, boxes_, slices_, clock_, filter_};
};

}  // namespace tallyhorn
