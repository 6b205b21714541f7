#include "storage/JournalWriter.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

namespace tallyhorn {
namespace {

constexpr std::chrono::milliseconds WriteInterval{20};
constexpr std::chrono::seconds SyncInterval{1};
constexpr std::chrono::seconds LongestEnd{5};

/// What is to be done after the bytes of a batch have been written.
enum class Control { None, Open, BeginNew, CommitNew, Remove };

/// Bytes for both files and what follows them.
struct Batch {
    std::string Present;
    std::string New;
    Control Then = Control::None;
    std::uint64_t Kept = 0;  ///< the number of bytes that Open keeps
};

}  // namespace

/// What the threads and the writer share.  Threads own it too, because they may outlive the writer.
class JournalWriter::Shared {
public:
    Shared(std::shared_ptr<Files> files, const std::filesystem::path& file)
        : files_(std::move(files)), file_(file), newFile_(file) {
        newFile_ += ".new";
    }

    // ---- any thread

    void Append(std::string Batch::*part, std::string_view bytes) {
        const std::lock_guard lock(mutex_);
        if (pending_ + bytes.size() > MostPending) {
            overflowed_ = true;
            state_.Failed = true;
            state_.NewFailed = true;
            return;
        }
        pending_ += bytes.size();
        LastBatch().*part += bytes;
    }

    void Request(Control control, std::uint64_t kept = 0) {
        const std::lock_guard lock(mutex_);
        if (control == Control::BeginNew) {
            overflowed_ = false;
            state_.NewFailed = false;
        }
        Batch& batch = LastBatch();
        batch.Then = control;
        batch.Kept = kept;
    }

    State CurrentState() const {
        const std::lock_guard lock(mutex_);
        State state = state_;
        state.Pending = pending_;
        return state;
    }

    bool WaitUntilDone(std::chrono::milliseconds longest) {
        std::unique_lock lock(mutex_);
        hurry_ = true;
        napEnds_.notify_all();
        const bool done = progress_.wait_for(lock, longest, [this] { return IsDone(); });
        hurry_ = false;
        return done;
    }

    void Stop() {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        somethingToWrite_.notify_all();
        somethingToSync_.notify_all();
        napEnds_.notify_all();
    }
    /// Returns whether both threads have ended within `longest`.
    bool WaitForThreads(std::chrono::milliseconds longest) {
        std::unique_lock lock(mutex_);
        return progress_.wait_for(lock, longest, [this] { return running_ == 0; });
    }
    void AddThreads(int count) {
        const std::lock_guard lock(mutex_);
        running_ += count;
    }

    // ---- the writer thread

    void WriteUntilStopped() {
        std::unique_lock lock(mutex_);
        while (!stopping_ || !batches_.empty()) {
            somethingToWrite_.wait(lock, [this] { return stopping_ || !batches_.empty(); });
            // Collects what arrives in this time, so that a storm costs at most fifty writes a second.
            napEnds_.wait_for(lock, WriteInterval, [this] { return stopping_ || hurry_; });
            lock.unlock();
            Deliver();
            lock.lock();
        }
        --running_;
        progress_.notify_all();
    }

    void Deliver() {
        std::unique_lock lock(mutex_);
        while (!batches_.empty()) {
            Batch batch = std::move(batches_.front());
            batches_.pop_front();
            writing_ = true;
            lock.unlock();
            Write(batch);
            lock.lock();
            writing_ = false;
            pending_ -= batch.Present.size() + batch.New.size();
            Reuse(std::move(batch.Present));
            progress_.notify_all();
        }
    }

    // ---- the sync thread

    void SyncUntilStopped() {
        std::unique_lock lock(mutex_);
        while (!stopping_) {
            somethingToSync_.wait(lock, [this] { return stopping_ || unsynced_; });
            const auto next = std::chrono::steady_clock::now() + SyncInterval;
            lock.unlock();
            Sync();
            lock.lock();
            napEnds_.wait_until(lock, next, [this] { return stopping_ || hurry_; });
        }
        --running_;
        progress_.notify_all();
    }

    void Sync() {
        std::unique_lock lock(mutex_);
        if (!unsynced_)
            return;
        unsynced_ = false;
        syncing_ = true;
        const std::shared_ptr<AppendFile> file = present_;
        lock.unlock();
        const bool failed = file != nullptr && file->Sync().has_value();
        lock.lock();
        syncing_ = false;
        // A new file, which is synced before it replaces the old one, may have done so meanwhile.
        if (failed && file == present_)
            state_.Failed = true;
        progress_.notify_all();
    }

private:
    /// Returns the batch to which bytes and one control may be added.
    Batch& LastBatch() {
        if (batches_.empty() || batches_.back().Then != Control::None) {
            batches_.emplace_back();
            batches_.back().Present = std::exchange(spare_, {});
            somethingToWrite_.notify_one();
        }
        return batches_.back();
    }
    /// Keeps the memory of a written batch for the next one, unless a storm has made it large.
    void Reuse(std::string bytes) {
        constexpr std::size_t Large = std::size_t{4} << 20U;
        bytes.clear();
        if (bytes.capacity() <= Large)
            spare_ = std::move(bytes);
    }
    bool IsDone() const { return batches_.empty() && !writing_ && !unsynced_ && !syncing_; }

    void Write(const Batch& batch) {
        if (!batch.Present.empty() && present_ != nullptr && !HasFailed()) {
            const bool failed = present_->Write(batch.Present).has_value();
            written_ += batch.Present.size();
            const std::lock_guard lock(mutex_);
            state_.Failed = state_.Failed || failed;
            unsynced_ = true;
            somethingToSync_.notify_one();
        }
        if (!batch.New.empty() && new_ != nullptr && new_->Write(batch.New))
            AbandonNew();
        newWritten_ += batch.New.size();
        switch (batch.Then) {
            case Control::None:
                break;
            case Control::Open:
                RemoveNew();
                OpenPresent(batch.Kept);
                break;
            case Control::BeginNew:
                BeginNew();
                break;
            case Control::CommitNew:
                CommitNew();
                break;
            case Control::Remove:
                RemoveNew();
                SetPresent(nullptr);
                files_->Remove(file_);
                break;
        }
    }

    bool HasFailed() const {
        const std::lock_guard lock(mutex_);
        return state_.Failed;
    }
    void SetPresent(std::shared_ptr<AppendFile> file) {
        const std::lock_guard lock(mutex_);
        present_ = std::move(file);
    }

    void OpenPresent(std::uint64_t kept) {
        SystemError error;
        SetPresent(files_->OpenToAppend(file_, kept, error));
        written_ = kept;
        const std::lock_guard lock(mutex_);
        state_.Failed = present_ == nullptr;
    }

    void BeginNew() {
        SystemError error;
        new_ = files_->OpenToAppend(newFile_, 0, error);
        newWritten_ = 0;
        if (new_ == nullptr)
            AbandonNew();
    }

    /// Removes a new file that was not committed, for example when an earlier process was killed.
    void RemoveNew() {
        new_ = nullptr;
        files_->Remove(newFile_);
    }

    void AbandonNew() {
        RemoveNew();
        const std::lock_guard lock(mutex_);
        state_.NewFailed = true;
        state_.Failed = state_.Failed || present_ == nullptr;
    }

    /// Closes the present file before the rename, because Windows cannot replace an open file.
    void CommitNew() {
        if (new_ == nullptr)
            return;
        if (CurrentState().NewFailed || new_->Sync())
            return AbandonNew();
        const bool hadPresent = present_ != nullptr;
        SetPresent(nullptr);
        if (files_->Rename(newFile_, file_)) {
            AbandonNew();
            if (hadPresent)
                Reopen();
            return;
        }
        SetPresent(std::move(new_));
        new_ = nullptr;
        written_ = newWritten_;
        const std::lock_guard lock(mutex_);
        state_.Failed = overflowed_;
        ++state_.Committed;
    }

    /// Opens the present file again after a new file could not replace it.
    void Reopen() {
        const bool failedBefore = HasFailed();
        OpenPresent(written_);
        const std::lock_guard lock(mutex_);
        state_.Failed = state_.Failed || failedBefore;
    }

    // ---- used by the writer thread only
    const std::shared_ptr<Files> files_;
    const std::filesystem::path file_;
    std::filesystem::path newFile_;
    std::shared_ptr<AppendFile> new_;
    std::uint64_t written_ = 0;     ///< the size of the present file
    std::uint64_t newWritten_ = 0;  ///< the size of the new file

    // ---- guarded by the mutex
    mutable std::mutex mutex_;
    std::condition_variable somethingToWrite_;
    std::condition_variable somethingToSync_;
    std::condition_variable napEnds_;  ///< a wait between two writes or syncs shall end early
    std::condition_variable progress_;
    std::deque<Batch> batches_;
    std::string spare_;
    std::size_t pending_ = 0;
    std::shared_ptr<AppendFile> present_;  ///< changed by the writer thread only
    State state_;
    bool overflowed_ = false;  ///< whether bytes were dropped since the last request of a new file
    bool writing_ = false;
    bool unsynced_ = false;
    bool syncing_ = false;
    bool hurry_ = false;
    bool stopping_ = false;
    int running_ = 0;
};

JournalWriter::JournalWriter(std::shared_ptr<Files> files, const std::filesystem::path& file)
    : shared_(std::make_shared<Shared>(std::move(files), file)) {}

JournalWriter::~JournalWriter() {
    if (!writing_.joinable())
        return;
    shared_->Stop();
    const bool ended = shared_->WaitForThreads(LongestEnd);
    for (std::thread* const thread : {&writing_, &syncing_}) {
        if (ended)
            thread->join();
        else
            thread->detach();
    }
}

void JournalWriter::Start() {
    shared_->AddThreads(2);
    writing_ = std::thread([shared = shared_] { shared->WriteUntilStopped(); });
    syncing_ = std::thread([shared = shared_] { shared->SyncUntilStopped(); });
}

void JournalWriter::Open(std::uint64_t kept) {
    shared_->Request(Control::Open, kept);
}

void JournalWriter::Append(std::string_view bytes) {
    shared_->Append(&Batch::Present, bytes);
}

void JournalWriter::BeginNew(std::string_view header) {
    shared_->Request(Control::BeginNew);
    AppendNew(header);
}

void JournalWriter::AppendNew(std::string_view bytes) {
    shared_->Append(&Batch::New, bytes);
}

void JournalWriter::CommitNew() {
    shared_->Request(Control::CommitNew);
}

void JournalWriter::Remove() {
    shared_->Request(Control::Remove);
}

JournalWriter::State JournalWriter::CurrentState() const {
    return shared_->CurrentState();
}

bool JournalWriter::Flush(std::chrono::milliseconds longest) {
    if (!writing_.joinable()) {
        Deliver();
        Sync();
    }
    return shared_->WaitUntilDone(longest);
}

void JournalWriter::Deliver() {
    shared_->Deliver();
}

void JournalWriter::Sync() {
    shared_->Sync();
}

}  // namespace tallyhorn
