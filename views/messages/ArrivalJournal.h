#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "views/messages/Channels.h"

namespace tallyhorn {

/// The port that records notifications which wait in a pause or a hold, so that a crash does not lose them.
class ArrivalJournal {
public:
    virtual ~ArrivalJournal() = default;
    /// Records a notification that has arrived and waits.  Returns its number for BeginHandling.
    virtual std::uint64_t Hold(Channel channel, std::string_view text) = 0;
    /// Records that the notification does not wait any more.  What is recorded between BeginHandling and
    /// EndHandling survives a crash together or not at all, so that the notification is neither lost nor kept
    /// twice.
    virtual void BeginHandling(Channel channel, std::uint64_t number) = 0;
    virtual void EndHandling() = 0;
};

/// A waiting notification and the number that ArrivalJournal::Hold returned.
struct HeldArrival {
    std::uint64_t Number = 0;
    std::string Text;
};

/// Calls BeginHandling, and EndHandling when it is destroyed.
class HandledArrival {
public:
    HandledArrival(ArrivalJournal& journal, Channel channel, std::uint64_t number) : journal_(journal) {
        journal_.BeginHandling(channel, number);
    }
    ~HandledArrival() { journal_.EndHandling(); }
    HandledArrival(const HandledArrival&) = delete;
    HandledArrival& operator=(const HandledArrival&) = delete;

private:
    ArrivalJournal& journal_;
};

}  // namespace tallyhorn
