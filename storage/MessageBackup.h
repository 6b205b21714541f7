#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/InputFile.h"
#include "platform/MessageBoxes.h"
#include "platform/SystemError.h"
#include "platform/TimeSlices.h"
#include "views/messages/MessageStore.h"

namespace tallyhorn {

/// Saves the texts of a message store in the backup file and loads them back.  The objects that the
/// constructor takes by reference must outlive it.
class MessageBackup {
public:
    MessageBackup(std::filesystem::path file, const MessageStore& messages, MessageBoxes& boxes,
                  TimeSlices& slices);

    /// Empties the file, which keeps its permissions, and writes every text that is not blank, in the order
    /// of the slots. The bytes are on the disk when this returns.  The first failure ends the save and is
    /// shown to the user. compatibility: a missing old file counts as a failure to delete it.  Does nothing
    /// during LoadMessageBackup, because the file then contains messages that are not yet in the store.
    void SaveMessageBackup();

    /// Calls `restore` for each text of the file that is not blank, and from time to time `showProgress`,
    /// with the number of texts restored so far and the number of all texts.  Lets pending events run between
    /// the texts.  Creates the file if there is none, and skips damaged parts without telling the user.
    void LoadMessageBackup(const std::function<void(std::string_view)>& restore,
                           const std::function<void(std::uint64_t done, std::uint64_t total)>& showProgress);

private:
    std::optional<SystemError> Save() const;
    template <typename Handle>
    void ForEachText(InputFile& file, Handle handle);

    const std::filesystem::path file_;
    const MessageStore& messages_;
    MessageBoxes& boxes_;
    TimeSlices& slices_;
    bool loading_ = false;
};

}  // namespace tallyhorn
