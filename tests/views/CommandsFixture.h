#pragma once

#include <gtest/gtest.h>

#include "tests/support/FakeArrivals.h"
#include "tests/support/MessagesInMemory.h"
#include "views/MessageCommands.h"

namespace tallyhorn {

/// Owns the commands, with empty lists and a fake window.
class CommandsFixture : public ::testing::Test, protected MessagesInMemory {
protected:
    FakeViewFilter filter_;
    MessageCommands commands_{Context, filter_};
};

}  // namespace tallyhorn
