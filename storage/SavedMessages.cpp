#include "storage/SavedMessages.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "storage/DamagedFile.h"

namespace tallyhorn {
namespace {

constexpr const char* BackupFileName = "Backup.dat";
constexpr const char* JournalFileName = "Journal.dat";

/// Showing the progress takes as long as restoring a message, so it is shown only after every hundredth one.
constexpr std::uint64_t MessagesPerShow = 100;

}  // namespace

/// What the files of the previous run contain.
struct SavedMessages::Previous {
    std::vector<std::string> Texts;  ///< the texts in the backup file
    JournalImage Image;
    std::uint64_t JournalEnd = 0;
    bool Matches = false;     ///< whether the journal belongs to the backup file
    bool Unreadable = false;  ///< whether a part of the journal could not be read
};

SavedMessages::SavedMessages(std::shared_ptr<Files> files, const std::filesystem::path& folder,
                             const MessageContext& context, std::uint64_t largeJournal)
    : files_(std::move(files)),
      journalFile_(folder / JournalFileName),
      context_(context),
      backup_(folder / BackupFileName, context.Received.Syslog.Messages, context.Boxes, context.Slices,
              *files_, context.Time),
      writer_(files_, journalFile_),
      journal_(writer_, context.Received, context.Time, largeJournal) {}

bool SavedMessages::Load(const Progress& showProgress, const std::function<bool()>& mayGoOn) {
    showProgress_ = &showProgress;
    mayGoOn_ = &mayGoOn;
    std::unique_ptr<InputFile> file;
    SystemError error;
    switch (files_->Open(journalFile_, file, error)) {
        case Files::Opening::Opened:
            return LoadWithJournal(std::move(file));
        case Files::Opening::Failed:
            KeepJournalAside();
            break;
        case Files::Opening::Missing:
            break;
    }
    return LoadBackupAlone();
}

/// Restores the texts while they are read, since nothing else is needed after a normal end.
bool SavedMessages::LoadBackupAlone() {
    const auto restore = [this](std::string_view text) {
        context_.Received.RestoreBackupMessage(text, Now(), context_.CurrentAlarm);
    };
    const MessageBackup::Loaded loaded = backup_.LoadMessageBackup(restore, *showProgress_, *mayGoOn_);
    damaged_ = damaged_ || loaded.Damaged;
    backupHash_ = loaded.Hash;
    journal_.Begin(backupHash_);
    return loaded.Complete;
}

bool SavedMessages::LoadWithJournal(std::unique_ptr<InputFile> file) {
    JournalReader reader(*file);
    const std::optional<JournalHeader> header = reader.ReadHeader();
    if (!header) {
        const bool interrupted = reader.IsEmpty();
        file.reset();
        if (!interrupted)
            KeepJournalAside();
        return LoadBackupAlone();
    }
    Previous previous;
    const MessageBackup::Loaded loaded =
        backup_.LoadMessageBackup([&previous](std::string_view text) { previous.Texts.emplace_back(text); },
                                  [](std::uint64_t, std::uint64_t) {}, *mayGoOn_);
    damaged_ = damaged_ || loaded.Damaged;
    backupHash_ = loaded.Hash;
    previous.Matches = header->BackupHash == backupHash_;
    if (previous.Matches && !header->Complete) {
        for (const std::string& text : previous.Texts)
            previous.Image.AddFromBackup(text);
    }
    JournalRecord record;
    while (reader.Next(record))
        previous.Image.Apply(record);
    previous.JournalEnd = reader.End();
    previous.Unreadable = reader.Damaged() > 0 || file->Failed();
    file.reset();
    if (previous.Image.EndsWithSaving(backupHash_)) {
        // The previous run saved the backup file but ended before it removed the journal.
        const bool restored = loaded.Complete && RestoreTexts(previous.Texts);
        journal_.Begin(backupHash_);
        return restored;
    }
    if (previous.Unreadable)
        KeepJournalAside();
    if (loaded.Complete && RestorePrevious(previous))
        return true;
    journal_.Continue(backupHash_, previous.JournalEnd);
    return false;
}

/// Restores the messages of the previous run and opens the journal.  Returns false, without opening the
/// journal, if the load is to end early.
bool SavedMessages::RestorePrevious(Previous& previous) {
    // If the journal belongs to another backup file, the messages of the present backup file are restored
    // first, and those of the journal after them.
    const bool foreign = !previous.Matches && !previous.Texts.empty();
    if ((foreign && !RestoreTexts(previous.Texts)) || !RestoreImage(previous, !foreign))
        return false;
    for (std::size_t i = 0; i < ChannelCount; ++i) {
        const auto channel = static_cast<Channel>(i);
        arrivals_.at(i) = previous.Image.TakeArrivals(channel);
        journal_.TakeOver(channel, arrivals_.at(i));
    }
    if (previous.Matches && !previous.Unreadable)
        journal_.Continue(backupHash_, previous.JournalEnd);
    else
        journal_.WriteSnapshot(backupHash_);
    return true;
}

bool SavedMessages::RestoreTexts(const std::vector<std::string>& texts) {
    total_ = texts.size();
    for (const std::string& text : texts) {
        context_.Received.RestoreBackupMessage(text, Now(), context_.CurrentAlarm);
        if (!Advance())
            return false;
    }
    return true;
}

/// Restores the messages of the image, at their slots or, if `keepSlots` is false, in the slots after the
/// messages that have already been restored.
bool SavedMessages::RestoreImage(Previous& previous, bool keepSlots) {
    std::vector<JournalMessage> messages = previous.Image.TakeMessages();
    total_ += messages.size();
    std::array<std::vector<Slot>, ChannelCount> taken;
    for (JournalMessage& message : messages) {
        MessageChannel& channel = context_.Received.In(message.From);
        std::vector<Slot>& slots = taken.at(static_cast<std::size_t>(message.From));
        if (!keepSlots)
            message.Place = channel.Traits.FirstSlot + channel.Messages.MessageCount();
        slots.push_back(message.Place);
        context_.Received.RestoreMessage(channel, message.Place, std::move(message.Text), Now(),
                                         context_.CurrentAlarm);
        if (!Advance())
            return false;
    }
    if (keepSlots) {
        journal_.SetSequence(previous.Image.NextSequence());
        for (std::size_t channel = 0; channel < ChannelCount; ++channel)
            QueueGaps(static_cast<Channel>(channel), std::move(taken.at(channel)));
    }
    return true;
}

void SavedMessages::QueueGaps(Channel channel, std::vector<Slot> taken) {
    std::sort(taken.begin(), taken.end());
    MessageChannel& messages = context_.Received.In(channel);
    messages.Messages.QueueGaps(messages.Traits.FirstSlot, taken);
}

/// Counts a restored message.  Returns false if the load is to end early.
bool SavedMessages::Advance() {
    if (++done_ % MessagesPerShow == 0 || done_ == total_)
        (*showProgress_)(done_, total_);
    context_.Slices.LetRun();
    return (*mayGoOn_)();
}

void SavedMessages::KeepJournalAside() {
    damaged_ = true;
    KeepDamagedFile(*files_, journalFile_, context_.Time, context_.Slices);
}

void SavedMessages::Save() {
    std::optional<std::uint64_t> newHash;
    const bool saved = backup_.SaveMessageBackup([this, &newHash](std::uint64_t hash) {
        newHash = hash;
        journal_.NoteSaving(hash);
    });
    if (saved)
        return journal_.Remove();
    // The old backup file may be missing, and the journal must restore its messages too.  The new backup file
    // may be in place although the save reported a failure; then the last record says so.
    if (journal_.WriteSnapshot(backupHash_) && newHash)
        journal_.NoteSaving(*newHash);
}

}  // namespace tallyhorn
