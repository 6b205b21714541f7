#include "storage/JournalFormat.h"

#include <array>

#include "platform/Hash64.h"

namespace tallyhorn {
namespace {

constexpr std::string_view Magic = "THJRNL1\n";
constexpr std::size_t NumberSize = 8;
constexpr std::size_t SizeOffset = 2;
constexpr std::size_t CheckOffset = 6;
constexpr unsigned BitsPerByte = 8;

using Type = JournalRecord::Type;

template <typename Number>
void AppendNumber(std::string& bytes, Number number) {
    std::array<char, sizeof(Number)> digits{};
    for (char& digit : digits) {
        digit = static_cast<char>(number & 0xFFU);
        number = static_cast<Number>(number >> BitsPerByte % (sizeof(Number) * BitsPerByte));
    }
    bytes.append(digits.data(), digits.size());
}

/// Removes a number from the front of `bytes`.  Returns false if `bytes` is too short.
template <typename Number>
bool TakeNumber(std::string_view& bytes, Number& number) {
    if (bytes.size() < sizeof(Number))
        return false;
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        value = value << BitsPerByte | static_cast<unsigned char>(bytes[i]);
    number = static_cast<Number>(value);
    bytes.remove_prefix(sizeof(Number));
    return true;
}

/// Removes a text and its size from the front of `bytes`.  Returns false if `bytes` is too short.
bool TakeText(std::string_view& bytes, std::string_view& text) {
    std::uint32_t size = 0;
    if (!TakeNumber(bytes, size) || bytes.size() < size)
        return false;
    text = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return true;
}

bool TakeSlot(std::string_view& bytes, Slot& slot) {
    std::uint32_t number = 0;
    if (!TakeNumber(bytes, number) || number > LargestSlot)
        return false;
    slot = static_cast<Slot>(number);
    return true;
}

void AppendText(std::string& bytes, std::string_view text) {
    AppendNumber(bytes, static_cast<std::uint32_t>(text.size()));
    bytes.append(text);
}

/// Returns the check of a frame: the hash of its body and of the size of its body.
std::uint64_t FrameCheck(std::string_view body) {
    return Hash64(body) ^ (body.size() * 0x9E3779B97F4A7C15U);
}

}  // namespace

std::string EncodeHeader(const JournalHeader& header) {
    std::string bytes(Magic);
    AppendNumber(bytes, std::uint64_t{header.Complete ? 1U : 0U});
    AppendNumber(bytes, header.BackupHash);
    AppendNumber(bytes, Hash64(bytes));
    return bytes;
}

std::optional<JournalHeader> DecodeHeader(std::string_view bytes) {
    if (bytes.size() != JournalHeaderSize || !bytes.starts_with(Magic))
        return std::nullopt;
    const std::uint64_t computed = Hash64(bytes.substr(0, JournalHeaderSize - NumberSize));
    bytes.remove_prefix(Magic.size());
    JournalHeader header;
    std::uint64_t flags = 0;
    std::uint64_t check = 0;
    if (!TakeNumber(bytes, flags) || !TakeNumber(bytes, header.BackupHash) || !TakeNumber(bytes, check) ||
        check != computed || flags > 1)
        return std::nullopt;
    header.Complete = flags == 1;
    return header;
}

std::size_t EncodedSize(const JournalRecord& record) {
    constexpr std::size_t Start = 2;
    switch (record.Kind) {
        case Type::Kept:
            return Start + sizeof(std::uint32_t) + NumberSize + sizeof(std::uint32_t) + record.Text.size();
        case Type::ArrivalHeld:
            return Start + NumberSize + sizeof(std::uint32_t) + record.Text.size();
        case Type::Freed:
            return Start + sizeof(std::uint32_t);
        case Type::ArrivalHandled:
        case Type::Saving:
            return Start + NumberSize;
        case Type::Cleared:
            break;
    }
    return Start;
}

void EncodeRecord(const JournalRecord& record, std::string& body) {
    body.push_back(static_cast<char>(record.Kind));
    body.push_back(static_cast<char>(record.From));
    if (record.Kind == Type::Kept || record.Kind == Type::Freed)
        AppendNumber(body, static_cast<std::uint32_t>(record.Place));
    if (record.Kind == Type::Kept || record.Kind == Type::ArrivalHeld || record.Kind == Type::ArrivalHandled)
        AppendNumber(body, record.Sequence);
    if (record.Kind == Type::Saving)
        AppendNumber(body, record.Hash);
    if (record.Kind == Type::Kept || record.Kind == Type::ArrivalHeld)
        AppendText(body, record.Text);
}

bool DecodeRecord(std::string_view& body, JournalRecord& record) {
    std::uint8_t kind = 0;
    std::uint8_t channel = 0;
    if (!TakeNumber(body, kind) || !TakeNumber(body, channel) || channel >= ChannelCount)
        return false;
    record.Kind = static_cast<Type>(kind);
    record.From = static_cast<Channel>(channel);
    switch (record.Kind) {
        case Type::Kept:
            return TakeSlot(body, record.Place) && TakeNumber(body, record.Sequence) &&
                   TakeText(body, record.Text);
        case Type::Freed:
            return TakeSlot(body, record.Place);
        case Type::ArrivalHeld:
            return TakeNumber(body, record.Sequence) && TakeText(body, record.Text);
        case Type::ArrivalHandled:
            return TakeNumber(body, record.Sequence);
        case Type::Saving:
            return TakeNumber(body, record.Hash);
        case Type::Cleared:
            return true;
    }
    return false;
}

void BeginFrame(std::string& frame) {
    frame.assign(JournalFrameOverhead, '\0');
}

void EndFrame(std::string& frame) {
    const std::string_view body = std::string_view(frame).substr(JournalFrameOverhead);
    std::string start(JournalMarker);
    AppendNumber(start, static_cast<std::uint32_t>(body.size()));
    AppendNumber(start, FrameCheck(body));
    frame.replace(0, start.size(), start);
}

std::optional<std::size_t> FrameSize(std::string_view bytes) {
    if (bytes.size() < JournalFrameOverhead || !bytes.starts_with(JournalMarker))
        return std::nullopt;
    std::uint32_t size = 0;
    bytes.remove_prefix(SizeOffset);
    if (!TakeNumber(bytes, size) || size > LargestJournalBody)
        return std::nullopt;
    return JournalFrameOverhead + size;
}

std::optional<std::string_view> FrameBody(std::string_view bytes) {
    const std::optional<std::size_t> size = FrameSize(bytes);
    if (!size || bytes.size() < *size)
        return std::nullopt;
    std::string_view checkBytes = bytes.substr(CheckOffset);
    std::uint64_t check = 0;
    const std::string_view body = bytes.substr(JournalFrameOverhead, *size - JournalFrameOverhead);
    if (!TakeNumber(checkBytes, check) || check != FrameCheck(body))
        return std::nullopt;
    return body;
}

}  // namespace tallyhorn
