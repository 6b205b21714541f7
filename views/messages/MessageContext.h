#pragma once

#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "platform/TimeSlices.h"
#include "records/AlarmRecord.h"
#include "views/messages/Gate.h"
#include "views/messages/ReceivedMessages.h"
#include "views/messages/ServerDisplay.h"

namespace tallyhorn {

/// The objects used by all classes that receive, show or change messages. They must outlive those classes.
struct MessageContext {
    ReceivedMessages& Received;
    ServerDisplay& Display;
    MessageBoxes& Boxes;
    TimeSlices& Slices;
    tallyhorn::Gate& Gate;
    Clock& Time;
    /// The record of the most recently read text of either channel. compatibility: a field that a text does
    /// not set keeps the value from the text read before it.
    AlarmRecord& CurrentAlarm;
};

}  // namespace tallyhorn
