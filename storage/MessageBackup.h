#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/InputFile.h"
#include "platform/MessageBoxes.h"
#include "platform/SystemError.h"
#include "platform/TimeSlices.h"
#include "storage/BackupProgress.h"
#include "views/messages/MessageStore.h"

namespace tallyhorn {

/// Writes the texts of a store to the backup file and reads them back; owns nothing but the file's name.
/// User-interface thread only; what it is given must outlive it.
class MessageBackup {
public:
    MessageBackup(std::filesystem::path file, const MessageStore& messages, MessageBoxes& boxes,
                  TimeSlices& slices);

    /// Puts a new file in the place of the old one, with every text that is not blank in the order of the
    /// slots; it is on the disk when this returns.  A failure, a missing old file too, is told to the user
    /// and ends it.  Does nothing inside LoadMessageBackup: the file then still holds what the store lacks.
    void SaveMessageBackup();

    /// Hands each text of the file that is not blank to `restore`, in between lets events run, and tells
    /// `progress` every so often.  Creates the file where there is none; what cannot be read is left out
    /// without a word.
    void LoadMessageBackup(const std::function<void(std::string_view)>& restore, BackupProgress& progress);

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
