#include "reception/SyslogQueue.h"

#include <utility>

namespace tallyhorn {

void SyslogQueue::Add(std::string_view text) {
    ++count_;
    if (count_ <= Positions)
        Put(count_, text);
    else if (const std::size_t position = count_ % Positions; position != 0)
        Put(position, text);
    else
        ++lost_;
}

/// Replaces the text at `position`.  If the limit leaves no room for the new text, both texts are lost.
void SyslogQueue::Put(std::size_t position, std::string_view text) {
    if (texts_.size() < position)
        texts_.resize(position);
    std::optional<HeldArrival>& place = texts_[position - 1];
    if (place) {
        const HandledArrival dropped(journal_, Channel::Syslog, place->Number);
        bytes_ -= place->Text.size();
        place.reset();
        ++lost_;
    }
    if (bytes_ + text.size() > limit_) {
        ++lost_;
        return;
    }
    place = HeldArrival{journal_.Hold(Channel::Syslog, text), std::string(text)};
    bytes_ += text.size();
}

std::vector<HeldArrival> SyslogQueue::Take() {
    std::vector<HeldArrival> texts;
    for (std::optional<HeldArrival>& place : texts_) {
        if (place)
            texts.push_back(std::move(*place));
    }
    texts_ = {};
    count_ = 0;
    bytes_ = 0;
    return texts;
}

}  // namespace tallyhorn
