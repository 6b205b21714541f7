#include "storage/JournalImage.h"

#include <algorithm>
#include <utility>

namespace tallyhorn {

void JournalImage::AddFromBackup(std::string_view text) {
    Apply({.From = Channel::Syslog,
           .Place = static_cast<Slot>(nextSequence_),
           .Sequence = nextSequence_,
           .Text = text});
}

void JournalImage::Apply(const JournalRecord& record) {
    ChannelImage& channel = channels_.at(static_cast<std::size_t>(record.From));
    saved_ = false;
    switch (record.Kind) {
        case JournalRecord::Type::Kept:
            channel.Messages[record.Place] = {record.Sequence, std::string(record.Text)};
            nextSequence_ = std::max(nextSequence_, record.Sequence + 1);
            break;
        case JournalRecord::Type::Freed:
            channel.Messages.erase(record.Place);
            break;
        case JournalRecord::Type::Cleared:
            channel.Messages.clear();
            break;
        case JournalRecord::Type::ArrivalHeld:
            channel.Arrivals.insert_or_assign(record.Sequence, std::string(record.Text));
            break;
        case JournalRecord::Type::ArrivalHandled:
            channel.Arrivals.erase(record.Sequence);
            break;
        case JournalRecord::Type::Saving:
            saved_ = true;
            savedHash_ = record.Hash;
            break;
    }
}

std::vector<JournalMessage> JournalImage::TakeMessages() {
    std::vector<JournalMessage> messages;
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
        for (auto& [place, kept] : channels_[channel].Messages)
            messages.push_back({static_cast<Channel>(channel), place, kept.Sequence, std::move(kept.Text)});
        channels_[channel].Messages.clear();
    }
    std::sort(messages.begin(), messages.end(),
              [](const JournalMessage& a, const JournalMessage& b) { return a.Sequence < b.Sequence; });
    return messages;
}

std::vector<HeldArrival> JournalImage::TakeArrivals(Channel channel) {
    std::vector<HeldArrival> arrivals;
    for (auto& [number, text] : std::exchange(channels_.at(static_cast<std::size_t>(channel)).Arrivals, {}))
        arrivals.push_back({number, std::move(text)});
    return arrivals;
}

}  // namespace tallyhorn
