#pragma once

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// The objects that all classes use which receive, show or change messages. They must outlive those classes.
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
