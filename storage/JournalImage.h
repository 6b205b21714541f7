#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "storage/JournalFormat.h"
#include "views/messages/ArrivalJournal.h"

namespace tallyhorn {

/// A message that a restart restores.
struct JournalMessage {
    Channel From = Channel::NetBios;
    Slot Place = 0;
    std::uint64_t Sequence = 0;
    std::string Text;
};

/// Owns the messages and the waiting arrivals that remain after all changes of a journal.
class JournalImage {
public:
    /// Adds the next message of the backup file, at the slot that loading it gives the message.
    void AddFromBackup(std::string_view text);
    void Apply(const JournalRecord& record);

    /// Returns whether the last change was the save of a backup file with this hash.
    bool EndsWithSaving(std::uint64_t hash) const { return saved_ && savedHash_ == hash; }
    /// Removes all messages and returns them in the order in which they were kept.
    std::vector<JournalMessage> TakeMessages();
    /// Removes and returns the notifications that wait to be handled, in the order in which they arrived.
    std::vector<HeldArrival> TakeArrivals(Channel channel);
    /// Returns a number greater than the sequence numbers of all messages that were ever added.
    std::uint64_t NextSequence() const { return nextSequence_; }

private:
    struct Kept {
        std::uint64_t Sequence = 0;
        std::string Text;
    };
    struct ChannelImage {
        std::unordered_map<Slot, Kept> Messages;
        std::map<std::uint64_t, std::string> Arrivals;  ///< the key is the sequence number
    };

    std::array<ChannelImage, ChannelCount> channels_;
    std::uint64_t nextSequence_ = 0;
    bool saved_ = false;
    std::uint64_t savedHash_ = 0;
};

}  // namespace tallyhorn
