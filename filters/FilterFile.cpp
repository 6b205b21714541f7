#include "filters/FilterFile.h"

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
