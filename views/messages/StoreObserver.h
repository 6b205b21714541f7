#pragma once

#include <string>

#include "views/messages/Slot.h"

namespace tallyhorn {

/// Is told of each change of a message store.
class StoreObserver {
public:
    virtual ~StoreObserver() = default;
    /// A message was put into `slot`.
    virtual void OnKept(Slot slot, const std::string& text) = 0;
    /// The message with this text is about to be removed from `slot`.
    virtual void OnFreed(Slot slot, const std::string& text) = 0;
    /// All messages were removed.
    virtual void OnCleared() = 0;
};

}  // namespace tallyhorn
