#include "storage/DamagedFile.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Hash64.h"
#include "records/AlarmDate.h"
#include "records/AnsiText.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t PieceSize = std::size_t{256} << 10U;

struct Content {
    std::uint64_t Size = 0;
    std::uint64_t Hash = 0;
    bool operator==(const Content&) const = default;
};

/// Returns nothing if the file cannot be opened.  After a read error, the result describes the bytes before
/// it.
std::optional<Content> ContentOf(Files& files, const fs::path& path, TimeSlices& slices) {
    std::unique_ptr<InputFile> file;
    SystemError error;
    if (files.Open(path, file, error) != Files::Opening::Opened)
        return std::nullopt;
    StreamingHash64 hash;
    std::uint64_t size = 0;
    std::vector<char> piece(PieceSize);
    for (std::size_t count = file->Read(piece); count > 0; count = file->Read(piece)) {
        hash.Add({piece.data(), count});
        size += count;
        slices.LetRun();
    }
    return Content{size, hash.Value()};
}

bool IsPreserved(Files& files, const fs::path& file, const std::vector<fs::path>& earlier,
                 TimeSlices& slices) {
    const std::optional<Content> content = ContentOf(files, file, slices);
    return content && std::any_of(earlier.begin(), earlier.end(), [&](const fs::path& path) {
               return ContentOf(files, path, slices) == content;
           });
}

std::string DateInName(const Clock& clock) {
    const CivilDateTime now = SplitAlarmDate(AlarmDate{clock.LocalSeconds()});
    std::string text = PadWithZeros(std::to_string(now.Year), 4);
    for (const int number : {now.Month, now.Day})
        text += PadWithZeros(std::to_string(number), 2);
    text += '-';
    for (const int number : {now.Hour, now.Minute, now.Second})
        text += PadWithZeros(std::to_string(number), 2);
    return text;
}

}  // namespace

std::optional<SystemError> KeepDamagedFile(Files& files, const fs::path& file, const Clock& clock,
                                           TimeSlices& slices) {
    fs::path prefix = file;
    prefix += ".damaged-";
    const std::vector<fs::path> earlier = files.PathsBeginningWith(prefix);
    if (IsPreserved(files, file, earlier, slices))
        return std::nullopt;
    fs::path aside = prefix += DateInName(clock);
    const fs::path first = aside;
    for (int i = 2; std::find(earlier.begin(), earlier.end(), aside) != earlier.end(); ++i) {
        aside = first;
        aside += '-';
        aside += std::to_string(i);
    }
    return files.KeepAside(file, aside);
}

}  // namespace tallyhorn
