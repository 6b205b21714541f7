#include "storage/MessageBackup.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/BufferedWriter.h"
#include "platform/OutputFile.h"
#include "records/AnsiText.h"
#include "storage/BackupReader.h"

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

}  // namespace

MessageBackup::MessageBackup(std::filesystem::path file, const MessageStore& messages, MessageBoxes& boxes,
                             TimeSlices& slices)
    : file_(std::move(file)), messages_(messages), boxes_(boxes), slices_(slices) {}

void MessageBackup::SaveMessageBackup() {
    if (loading_)
        return;
    if (const std::optional<SystemError> error = Save())
        boxes_.Warn(std::string(SaveFailure) + std::to_string(error->Number) + ":\t" + error->Text);
}

std::optional<SystemError> MessageBackup::Save() const {
    SystemError error;
    const std::unique_ptr<OutputFile> file = EmptyOutputFile(file_, error);
    if (!file)
        return error;
    BufferedWriter writer(*file);
    bool written = true;
    for (Slot slot = 0; slot <= messages_.UpperBound() && written; ++slot) {
        const std::string_view text = Trim(messages_.Text(slot));
        if (!text.empty())
            written = WriteText(writer, text);
    }
    return writer.Finish();
}

void MessageBackup::LoadMessageBackup(const std::function<void(std::string_view)>& restore,
                                      const std::function<void(std::uint64_t, std::uint64_t)>& showProgress) {
    const std::unique_ptr<InputFile> file = OpenInputFile(file_);
    if (!file || loading_)
        return;
    loading_ = true;
    std::uint64_t total = 0;
    ForEachText(*file, [&total](std::string_view) { ++total; });
    showProgress(0, total);
    file->Rewind();
    std::uint64_t done = 0;
    ForEachText(*file, [&](std::string_view text) {
        restore(text);
        if (++done % TextsPerShow == 0)
            showProgress(done, total);
    });
    showProgress(done, total);
    loading_ = false;
}

/// Calls `handle` for each text that is not blank.  Lets pending events run after each call of
/// BackupReader::Next, which also returns when it has searched ten thousand bytes of a damaged file without
/// finding a text.
template <typename Handle>
void MessageBackup::ForEachText(InputFile& file, Handle handle) {
    BackupReader reader(file);
    std::string_view text;
    for (auto step = reader.Next(text); step != BackupReader::Step::End; step = reader.Next(text)) {
        if (step == BackupReader::Step::Text && !Trim(text).empty())
            handle(text);
        slices_.LetRun();
    }
}

}  // namespace tallyhorn
