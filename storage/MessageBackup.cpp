#include "storage/MessageBackup.h"

#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "platform/BufferedWriter.h"
#include "platform/Hash64.h"
#include "platform/InputFile.h"
#include "platform/OutputFile.h"
#include "records/AnsiText.h"
#include "storage/BackupReader.h"
#include "storage/DamagedFile.h"

namespace tallyhorn {
namespace {

constexpr std::string_view SaveFailure =
    "The following error occurred when attempting to save received messages to disk.\r\nError # ";

/// Showing the progress takes as long as restoring a text, so it is shown only after every hundredth text.
constexpr std::uint64_t TextsPerShow = 100;

/// Returns the length in five digits. compatibility: a length of 100,000 or more has more digits, and its
/// text cannot be read back.
std::string LengthDigits(std::size_t length) {
    return PadWithZeros(std::to_string(length), BackupLengthDigits);
}

bool WriteText(BufferedWriter& writer, std::string_view text) {
    std::string withoutNulls;
    if (text.find('\0') != std::string_view::npos) {
        withoutNulls = text;
        std::erase(withoutNulls, '\0');
        text = withoutNulls;
    }
    return writer.Write(LengthDigits(text.size())) && writer.Write(text);
}

/// Hashes the bytes that are read from another source.
class HashingSource final : public ByteSource {
public:
    explicit HashingSource(ByteSource& source) : source_(source) {}
    std::size_t Read(std::span<char> buffer) override {
        const std::size_t count = source_.Read(buffer);
        hash_.Add({buffer.data(), count});
        return count;
    }
    std::uint64_t Hash() const { return hash_.Value(); }

private:
    ByteSource& source_;
    StreamingHash64 hash_;
};

/// Hashes the bytes that are written to another file.  Finishes that file only if all writes succeeded.
class HashingFile final : public OutputFile {
public:
    HashingFile(OutputFile& file, const std::function<void(std::uint64_t)>& beforeFinish)
        : file_(file), beforeFinish_(beforeFinish) {}
    std::optional<SystemError> Write(std::string_view bytes) override {
        hash_.Add(bytes);
        failure_ = file_.Write(bytes);
        return failure_;
    }
    std::optional<SystemError> Finish() override {
        if (failure_)
            return failure_;
        beforeFinish_(hash_.Value());
        return file_.Finish();
    }

private:
    OutputFile& file_;
    const std::function<void(std::uint64_t)>& beforeFinish_;
    StreamingHash64 hash_;
    std::optional<SystemError> failure_;
};

}  // namespace

MessageBackup::MessageBackup(std::filesystem::path file, const MessageStore& messages, MessageBoxes& boxes,
                             TimeSlices& slices, Files& files, const Clock& clock)
    : file_(std::move(file)),
      messages_(messages),
      boxes_(boxes),
      slices_(slices),
      files_(files),
      clock_(clock) {}

bool MessageBackup::SaveMessageBackup(const std::function<void(std::uint64_t)>& beforeReplacing) {
    const std::optional<SystemError> error = Save(beforeReplacing);
    if (error)
        boxes_.Warn(std::string(SaveFailure) + std::to_string(error->Number) + ":\t" + error->Text);
    return !error;
}

std::optional<SystemError> MessageBackup::Save(const std::function<void(std::uint64_t)>& beforeReplacing) {
    if (mustPreserve_) {
        if (std::optional<SystemError> failure = Preserve())
            return failure;
    }
    SystemError error;
    const std::unique_ptr<OutputFile> file = files_.CreateReplacement(file_, error);
    if (!file)
        return error;
    HashingFile hashing(*file, beforeReplacing);
    BufferedWriter writer(hashing);
    bool written = true;
    for (Slot slot = 0; slot <= messages_.UpperBound() && written; ++slot) {
        const std::string_view text = Trim(messages_.Text(slot));
        if (!text.empty())
            written = WriteText(writer, text);
    }
    return writer.Finish();
}

MessageBackup::Loaded MessageBackup::LoadMessageBackup(const Restore& restore, const Progress& showProgress,
                                                       const std::function<bool()>& mayGoOn) {
    std::unique_ptr<InputFile> file;
    SystemError error;
    const Files::Opening opening = files_.Open(file_, file, error);
    if (opening == Files::Opening::Missing)
        CreateFile();
    if (opening == Files::Opening::Failed) {
        mustPreserve_ = true;
        Preserve();
    }
    if (!file)
        return {Hash64(""), opening == Files::Opening::Failed, true};

    HashingSource hashing(*file);
    const Pass first = ForEachText(hashing, mayGoOn, [](std::string_view) {});
    mustPreserve_ = first.Complete && (first.Damaged || file->Failed());
    Loaded loaded{hashing.Hash(), mustPreserve_, first.Complete};
    if (mustPreserve_)
        Preserve();
    if (!loaded.Complete)
        return loaded;
    showProgress(0, first.Texts);
    file->Rewind();
    std::uint64_t done = 0;
    loaded.Complete = ForEachText(*file, mayGoOn, [&](std::string_view text) {
                          restore(text);
                          if (++done % TextsPerShow == 0)
                              showProgress(done, first.Texts);
                      }).Complete;
    showProgress(done, first.Texts);
    return loaded;
}

/// Creates the empty file that the next save replaces.  Keeps what another program may have written since.
void MessageBackup::CreateFile() {
    SystemError ignored;
    files_.OpenToAppend(file_, std::numeric_limits<std::uint64_t>::max(), ignored);
}

/// Preserves the damaged file.  A file that could not be opened was renamed, so an empty one takes its place.
std::optional<SystemError> MessageBackup::Preserve() {
    std::optional<SystemError> failure = KeepDamagedFile(files_, file_, clock_, slices_);
    mustPreserve_ = failure.has_value();
    std::unique_ptr<InputFile> file;
    SystemError error;
    if (!failure && files_.Open(file_, file, error) == Files::Opening::Missing)
        CreateFile();
    return failure;
}

/// Calls `handle` for each text that is not blank.  Lets pending events run after each call of
/// BackupReader::Next, which also returns when it has searched ten thousand bytes of a damaged file without
/// finding a text.
template <typename Handle>
MessageBackup::Pass MessageBackup::ForEachText(ByteSource& source, const std::function<bool()>& mayGoOn,
                                               Handle handle) {
    BackupReader reader(source);
    std::string_view text;
    Pass pass;
    for (auto step = reader.Next(text); step != BackupReader::Step::End; step = reader.Next(text)) {
        if (!mayGoOn()) {
            pass.Complete = false;
            break;
        }
        if (step == BackupReader::Step::Text && !Trim(text).empty()) {
            handle(text);
            ++pass.Texts;
        }
        slices_.LetRun();
    }
    pass.Damaged = reader.Damaged();
    return pass;
}

}  // namespace tallyhorn
