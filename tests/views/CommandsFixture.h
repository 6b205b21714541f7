#pragma once

#include <gtest/gtest.h>

#include "tests/support/MessagesInMemory.h"
#include "views/MessageCommands.h"

namespace tallyhorn {

/// The commands over empty lists and a window in memory.
class CommandsFixture : public ::testing::Test, protected MessagesInMemory {
protected:
    FakeViewFilter filter_;
    MessageCommands commands_{Context, filter_};
};

}  // namespace tallyhorn
