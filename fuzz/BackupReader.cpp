// Reads arbitrary bytes as the backup file.  The texts must be those that follow their lengths in the file,
// in order, reading must end, and complete records must be read back unchanged.

#include "storage/BackupReader.h"

#include <string>
#include <vector>

#include "fuzz/Require.h"
#include "records/AnsiText.h"
#include "tests/support/MemorySource.h"

namespace tallyhorn {
namespace {

std::vector<std::string> ReadAll(std::string_view bytes, std::size_t pieceSize, bool* damaged = nullptr) {
    MemorySource source(bytes, pieceSize);
    BackupReader reader(source);
    std::vector<std::string> texts;
    std::string_view text;
    std::size_t steps = 0;
    for (auto step = reader.Next(text); step != BackupReader::Step::End; step = reader.Next(text)) {
        if (step == BackupReader::Step::Text)
            texts.emplace_back(text);
        Require(++steps <= bytes.size());
    }
    Require(source.Left() == 0);
    if (damaged != nullptr)
        *damaged = reader.Damaged();
    return texts;
}

/// The reference implementation: returns the texts by reading the whole file from memory.
std::vector<std::string> ReadByTheRule(std::string_view bytes) {
    std::vector<std::string> texts;
    while (bytes.size() >= BackupLengthDigits) {
        std::int32_t length = 0;
        ReadInt32(bytes.substr(0, BackupLengthDigits), length);
        bytes.remove_prefix(BackupLengthDigits);
        if (length < static_cast<std::int32_t>(ShortestBackupText))
            continue;
        const auto size = static_cast<std::size_t>(length);
        if (size > bytes.size())
            break;
        texts.emplace_back(bytes.substr(0, size));
        bytes.remove_prefix(size);
    }
    return texts;
}

/// Cuts the bytes into texts of at least ShortestBackupText bytes; a text's first byte decides its length.
std::vector<std::string> CutIntoTexts(std::string_view bytes) {
    std::vector<std::string> texts;
    while (bytes.size() >= ShortestBackupText) {
        const std::size_t length = ShortestBackupText + static_cast<unsigned char>(bytes.front());
        texts.emplace_back(bytes.substr(0, length));
        bytes.remove_prefix(texts.back().size());
    }
    return texts;
}

std::string Record(const std::string& text) {
    return PadWithZeros(std::to_string(text.size()), BackupLengthDigits) + text;
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tallyhorn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t pieceSize = size % 3 == 0 ? std::string_view::npos : 1 + size % 97;
    Require(ReadAll(bytes, pieceSize) == ReadByTheRule(bytes));

    const std::vector<std::string> texts = CutIntoTexts(bytes);
    std::string file;
    for (const std::string& text : texts)
        file += Record(text);
    bool damaged = true;
    Require(ReadAll(file, pieceSize, &damaged) == texts && !damaged);
    return 0;
}
