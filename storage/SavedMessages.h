#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "storage/Journal.h"
#include "storage/JournalImage.h"
#include "storage/JournalReader.h"
#include "storage/JournalWriter.h"
#include "storage/MessageBackup.h"
#include "views/messages/MessageContext.h"

namespace tallyhorn {

/// Owns the backup file and the journal, and keeps them consistent with each other and with the message
/// stores: what Load restores is what the previous run held, however that run ended.
///
/// After a normal end there is only the backup file, which contains the syslog messages.  Otherwise there is
/// a journal too, which contains what changed since the backup file was loaded, or all messages.
class SavedMessages {
public:
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// `largeJournal` is the size in bytes below which the journal is not replaced by a snapshot.
    SavedMessages(std::shared_ptr<Files> files, const std::filesystem::path& folder,
                  const MessageContext& context, std::uint64_t largeJournal = Journal::DefaultLargeJournal);

    /// Starts the threads that write the journal.  Without this call, which tests omit, Files are used on the
    /// calling thread only.
    void StartThreads() { writer_.Start(); }

    /// Restores the messages of the previous run and starts the journal.  Lets pending events run.  Ends
    /// early and returns false once `mayGoOn` returns false.  The files then still contain all messages, and
    /// only arrivals that wait are recorded from then on.
    bool Load(const Progress& showProgress, const std::function<bool()>& mayGoOn);
    /// Saves the syslog messages in the backup file and removes the journal.  If that fails, shows a message,
    /// and the journal restores all messages at the next start.
    void Save();
    /// See Journal::Work.
    void Work() { journal_.Work(); }

    /// For tests, instead of StartThreads.
    JournalWriter& Writer() { return writer_; }

    /// Returns the object that records arrivals which wait.
    ArrivalJournal& Arrivals() { return journal_; }
    /// Removes and returns the arrivals that waited when the previous run ended.
    std::vector<HeldArrival> TakeArrivals(Channel channel) {
        return std::exchange(arrivals_.at(static_cast<std::size_t>(channel)), {});
    }

    bool IsProtected() const { return journal_.IsProtected(); }
    /// Returns whether Load found bytes that it could not read.  Their file was kept aside.
    bool FoundDamage() const { return damaged_; }

private:
    struct Previous;

    bool LoadBackupAlone();
    bool LoadWithJournal(std::unique_ptr<InputFile> file);
    bool RestorePrevious(Previous& previous);
    bool RestoreTexts(const std::vector<std::string>& texts);
    bool RestoreImage(Previous& previous, bool keepSlots);
    void QueueGaps(Channel channel, std::vector<Slot> taken);
    bool Advance();
    void KeepJournalAside();
    AlarmDate Now() const { return AlarmDate{context_.Time.LocalSeconds()}; }

    const std::shared_ptr<Files> files_;
    const std::filesystem::path journalFile_;
    const MessageContext& context_;
    MessageBackup backup_;
    JournalWriter writer_;
    Journal journal_;
    std::array<std::vector<HeldArrival>, ChannelCount> arrivals_;
    std::uint64_t backupHash_ = 0;
    bool damaged_ = false;

    // ---- during Load
    const Progress* showProgress_ = nullptr;
    const std::function<bool()>* mayGoOn_ = nullptr;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
};

}  // namespace tallyhorn
