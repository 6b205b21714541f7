#include "views/messages/MessageStore.h"

#include <utility>

namespace tallyhorn {
namespace {

const std::string Empty;

}  // namespace

MessageStore::MessageStore(Slot upperBound) {
    Clear(upperBound);
}

const std::string& MessageStore::Text(Slot slot) const {
    return Holds(slot) ? texts_[static_cast<std::size_t>(slot)] : Empty;
}

std::optional<Slot> MessageStore::TakeFreeSlot() {
    if (freeSlots_.empty())
        return std::nullopt;
    const Slot slot = freeSlots_.front();
    freeSlots_.pop_front();
    return slot;
}

Slot MessageStore::Grow() {
    texts_.GrowTo(texts_.Size() + 1);
    return UpperBound();
}

void MessageStore::Put(Slot slot, std::string text) {
    std::string& place = texts_[static_cast<std::size_t>(slot)];
    place = std::move(text);
    ++messageCount_;
    if (observer_ != nullptr)
        observer_->OnKept(slot, place);
}

void MessageStore::QueueGaps(Slot first, std::span<const Slot> taken) {
    for (const Slot slot : taken) {
        for (; first < slot; ++first)
            freeSlots_.push_back(first);
        first = slot + 1;
    }
}

void MessageStore::Free(Slot slot) {
    if (!Holds(slot))
        return;
    if (observer_ != nullptr)
        observer_->OnFreed(slot, Text(slot));
    // Not clear(), which would keep the text's memory.
    texts_[static_cast<std::size_t>(slot)] = std::string();
    freeSlots_.push_back(slot);
    --messageCount_;
}

void MessageStore::Clear(Slot upperBound) {
    texts_.Clear();
    texts_.GrowTo(static_cast<std::size_t>(upperBound) + 1);
    freeSlots_.clear();
    messageCount_ = 0;
    if (observer_ != nullptr)
        observer_->OnCleared();
}

}  // namespace tallyhorn
