#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "platform/TimeSlices.h"
#include "views/messages/MessageStore.h"

namespace tallyhorn {

/// Saves the texts of a message store in the backup file and loads them back.  What a load cannot read is
/// never overwritten: the file is preserved as KeepDamagedFile describes, or else no save replaces it.  The
/// objects that the constructor takes by reference must outlive it.
class MessageBackup {
public:
    /// What a load has found.
    struct Loaded {
        std::uint64_t Hash = 0;  ///< Hash64 of all bytes of the file that could be read
        bool Damaged = false;    ///< whether some bytes could not be read or belong to no text
        bool Complete = true;    ///< false if `mayGoOn` ended the load
    };
    using Restore = std::function<void(std::string_view text)>;
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    MessageBackup(std::filesystem::path file, const MessageStore& messages, MessageBoxes& boxes,
                  TimeSlices& slices, Files& files, const Clock& clock);

    /// Calls `restore` for each text of the file that is not blank, and from time to time `showProgress`,
    /// with the number of texts restored so far and the number of all texts.  Lets pending events run between
    /// the texts and asks `mayGoOn` before each.  Creates the file if there is none.
    Loaded LoadMessageBackup(const Restore& restore, const Progress& showProgress,
                             const std::function<bool()>& mayGoOn);

    /// Replaces the file by one with every text that is not blank, in the order of the slots; it keeps its
    /// permissions.  Calls `beforeReplacing` with the hash of the new file as the last step that can be
    /// undone.  The new file is on the disk when this returns.  The first failure ends the save, is shown to
    /// the user and leaves the old file as it is; the result is then false.  compatibility: a missing old
    /// file counts as a failure to delete it.
    bool SaveMessageBackup(const std::function<void(std::uint64_t hash)>& beforeReplacing);

private:
    /// The result of one pass over the file.
    struct Pass {
        std::uint64_t Texts = 0;
        bool Damaged = false;
        bool Complete = true;
    };
    template <typename Handle>
    Pass ForEachText(ByteSource& source, const std::function<bool()>& mayGoOn, Handle handle);
    void CreateFile();
    std::optional<SystemError> Preserve();
    std::optional<SystemError> Save(const std::function<void(std::uint64_t)>& beforeReplacing);

    const std::filesystem::path file_;
    const MessageStore& messages_;
    MessageBoxes& boxes_;
    TimeSlices& slices_;
    Files& files_;
    const Clock& clock_;
    bool mustPreserve_ = false;  ///< whether the present file is damaged and not yet preserved
};

}  // namespace tallyhorn
