#include "filters/FilterFile.h"

#include <algorithm>
#include <limits>
#include <system_error>

namespace tallyhorn {
namespace {

std::streamoff RecordStart(std::int32_t recordNumber) {
    return (std::streamoff{recordNumber} - 1) * static_cast<std::streamoff>(FilterRecordSize);
}

}  // namespace

void FilterFile::Open() {
    Close();
    std::error_code ignored;
    // Appending creates the file, but never empties one that another program has created since the check.
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
    // Without a buffer, each read gets the current bytes of one record from the file.
    file_.rdbuf()->pubsetbuf(nullptr, 0);
    file_.open(path_, mode | std::ios::binary);
    return file_.is_open();
}

std::int32_t FilterFile::CountRecords() {
    file_.clear();
    const std::streamoff size = file_.seekg(0, std::ios::end).tellg();
    // The last record may lack its unused bytes.  tellg returns -1 if no file is open.
    constexpr std::streamoff Unused = FilterRecordSize - FilterDataSize;
    const std::streamoff records =
        (std::max(size, std::streamoff{0}) + Unused) / std::streamoff{FilterRecordSize};
    return static_cast<std::int32_t>(
        std::min(records, std::streamoff{std::numeric_limits<std::int32_t>::max()}));
}

std::optional<SuppressionFilter> FilterFile::Read(std::int32_t recordNumber) {
    if (recordNumber < 1)
        return std::nullopt;
    std::array<char, FilterDataSize> data;
    file_.clear();
    file_.seekg(RecordStart(recordNumber));
    if (!file_.read(data.data(), data.size()))
        return std::nullopt;
    return DecodeFilter(data);
}

bool FilterFile::Write(std::int32_t recordNumber, const SuppressionFilter& filter) {
    if (recordNumber < 1)
        return false;
    const FilterRecord record = EncodeFilter(filter);
    file_.clear();
    file_.seekp(RecordStart(recordNumber));
    file_.write(record.data(), record.size());
    return static_cast<bool>(file_.flush());
}

}  // namespace tallyhorn
