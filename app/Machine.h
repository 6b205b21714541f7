#pragma once

#include <memory>

#include "platform/Clock.h"
#include "platform/DatagramSockets.h"
#include "platform/Files.h"
#include "platform/HelpViewer.h"
#include "platform/InstanceLock.h"
#include "platform/MailslotTransport.h"
#include "platform/MessageBoxes.h"
#include "platform/NotificationArea.h"
#include "platform/ProfileFunctions.h"
#include "platform/ProgramLauncher.h"
#include "platform/SaveDialog.h"
#include "platform/SoundDevice.h"
#include "platform/UserNames.h"

namespace tallyhorn {

/// The ports through which the console uses the system.  They must outlive the console.
struct Machine {
    InstanceLock& Instance;
    MailslotTransport& Mailslots;
    ProfileFunctions& Profiles;
    Clock& Time;
    MessageBoxes& Boxes;
    DatagramSockets& Datagrams;
    ProgramLauncher& Programs;
    SaveDialog& AskFile;
    NotificationArea& Area;
    SoundDevice& Sound;
    HelpViewer& Help;
    UserNames& Names;
    std::shared_ptr<tallyhorn::Files> Files;
};

}  // namespace tallyhorn
