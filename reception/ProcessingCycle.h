#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "reception/ReceptionParts.h"
#include "reception/SyslogEndpoint.h"
#include "reception/cvbMailslot.h"

namespace tallyhorn {

/// Moves notifications from the mailslot into store and views, and pauses and resumes both channels.  Events
/// may run in the middle of a poll, and one of them may be the next poll.
class ProcessingCycle {
public:
    /// The arguments, and the objects that `parts` refers to, must outlive the cycle.
    ProcessingCycle(cvbMailslot& mailslot, SyslogEndpoint& syslog, const ReceptionParts& parts)
        : mailslot_(mailslot), syslog_(syslog), parts_(parts) {}

    /// Polls the mailslot if the gate permits: reads all waiting texts, keeps those that no suppression
    /// filter drops, and shows those that the view filter does not hide.  In a pause or a hold, gives the
    /// waiting texts to the journal.
    void TimCheckTick();
    /// Adds texts that waited when the previous run ended.  The next poll keeps them.
    void TakeOver(std::vector<HeldArrival> arrivals);
    /// Reads the texts that wait in the mailslot and gives them to the journal, so that a crash does not lose
    /// them.  The next poll keeps them.
    void HoldWaiting();
    /// Polls if the gate answered the most recent poll with Later.  In a syslog storm every poll may be due
    /// while datagrams are handled; without this function the mailslot would then never be read.
    void MissedTick();

    /// Starts a pause, or ends the one that the tool bar shows and handles the datagrams queued during it.
    void PauseCommand();
    /// To be called every second during a pause; the 121st call ends the pause.
    void ResumeTick();

    /// Returns how many texts have been read since the start, including suppressed ones.
    std::uint64_t ReceivedCount() const { return receivedCount_; }

private:
    void ProcessText(std::string& text);

    cvbMailslot& mailslot_;
    SyslogEndpoint& syslog_;
    ReceptionParts parts_;
    std::int32_t resumeTicks_ = 0;
    std::uint64_t receivedCount_ = 0;
    std::vector<HeldArrival> held_;  ///< texts that the journal holds, older than those in the mailslot
    std::size_t heldBytes_ = 0;      ///< the sum of their sizes
    std::vector<std::string> spareMessages_;  ///< kept between polls, so that the next poll reuses its memory
};

}  // namespace tallyhorn
