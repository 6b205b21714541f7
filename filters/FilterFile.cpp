#include "filters/FilterFile.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace tallyhorn {
namespace {

std::streamoff SlotStart(std::int32_t recordNumber) {
    return (std::streamoff{recordNumber} - 1) * static_cast<std::streamoff>(FilterSlotSize);
}

}  // namespace

void FilterFile::Open() {
    Close();
    std::error_code ignored;
    // Appending creates the file and can never empty one that someone else has just created.
    if (std::filesystem::status(path_, ignored).type() == std::filesystem::file_type::not_found)
        std::ofstream(path_, std::ios::binary | std::ios::app);
    if (!std::filesystem::is_regular_file(path_, ignored))
        return;
    if (!TryOpen(std::ios::in | std::ios::out))
        TryOpen(std::ios::in);
}

void FilterFile::Close() {
    file_.close();
    file_.clear();
}

bool FilterFile::TryOpen(std::ios::openmode mode) {
    file_.clear();
    // Without a buffer a read takes the bytes of one record, as they are in the file now.
    file_.rdbuf()->pubsetbuf(nullptr, 0);
    file_.open(path_, mode | std::ios::binary);
    return file_.is_open();
}

std::int32_t FilterFile::CountRecords() {
    file_.clear();
    const std::streamoff size = file_.seekg(0, std::ios::end).tellg();
    // The last slot may end with its data; a size of -1 is that of no file.
    constexpr std::streamoff Unused = FilterSlotSize - FilterDataSize;
    const std::streamoff records =
        (std::max(size, std::streamoff{0}) + Unused) / std::streamoff{FilterSlotSize};
    return static_cast<std::int32_t>(
        std::min(records, std::streamoff{std::numeric_limits<std::int32_t>::max()}));
}

std::optional<SuppressionFilter> FilterFile::Read(std::int32_t recordNumber) {
    if (recordNumber < 1)
        return std::nullopt;
    std::array<char, FilterDataSize> data;
    file_.clear();
    file_.seekg(SlotStart(recordNumber));
    if (!file_.read(data.data(), data.size()))
        return std::nullopt;
    return DecodeFilter(data);
}

bool FilterFile::Write(std::int32_t recordNumber, const SuppressionFilter& filter) {
    if (recordNumber < 1)
        return false;
    const FilterSlot slot = EncodeFilter(filter);
    file_.clear();
    file_.seekp(SlotStart(recordNumber));
    file_.write(slot.data(), slot.size());
    return static_cast<bool>(file_.flush());
}

}  // namespace tallyhorn
