#pragma once

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// What everything that receives, shows or changes messages works with. All of it outlives its users.
struct MessageContext {
    ReceivedMessages& Received;
    ServerDisplay& Display;
    MessageBoxes& Boxes;
    TimeSlices& Slices;
    Clock& Time;
    /// The record of the text that was read last, of either channel. Compatibility: a field that a text does
    /// not set keeps the value of the text before.
    AlarmRecord& CurrentAlarm;
};

}  // namespace tallyhorn
