#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "views/messages/Channels.h"
#include "views/messages/MessageStore.h"

namespace tallyhorn {

// The format of the journal, a file of all changes to the message stores since the backup file was loaded.
// Numbers are little-endian.
//
//     header  "THJRNL1\n", flags (8 bytes: 1 if complete, else 0), hash of the backup file (8), check (8)
//     frame   marker 0xB5 0x4A, size of the body (4), check (8), body
//     body    one or several records, which are valid together or not at all
//     record  kind (1), channel (1), then:
//             Kept            slot (4), sequence (8), size of the text (4), text
//             Freed           slot (4)
//             Cleared         nothing
//             ArrivalHeld     sequence (8), size of the text (4), text
//             ArrivalHandled  sequence (8)
//             Saving          hash (8)
//
// The check of the header is Hash64 of the bytes before it, that of a frame depends on its size and its body.

/// What the journal's first bytes say.
struct JournalHeader {
    /// Whether the journal contains all messages.  Otherwise it contains the changes since the backup file
    /// with the hash `BackupHash` was loaded.
    bool Complete = false;
    std::uint64_t BackupHash = 0;
};

/// One change.  Fields that its kind does not name are unused.
struct JournalRecord {
    enum class Type : std::uint8_t {
        Kept = 1,        ///< `Text` was put into `Place`
        Freed,           ///< the message at `Place` was deleted
        Cleared,         ///< all messages of the channel were deleted
        ArrivalHeld,     ///< the notification `Text` arrived and waits to be handled
        ArrivalHandled,  ///< the waiting notification with this sequence number was handled or dropped
        Saving,          ///< a backup file with the hash `Hash` is about to replace the old one
    };

    Type Kind = Type::Kept;
    Channel From = Channel::NetBios;
    Slot Place = 0;
    /// Grows with each message that is kept, in both channels together.  Arrivals have numbers of their own.
    std::uint64_t Sequence = 0;
    std::uint64_t Hash = 0;
    std::string_view Text = {};
};

constexpr std::size_t JournalHeaderSize = 32;
/// The size of a frame without its body.
constexpr std::size_t JournalFrameOverhead = 14;
/// The largest body.  A reader regards a larger size as damage.
constexpr std::size_t LargestJournalBody = std::size_t{64} << 20U;
/// The largest slot that a record may name.  It bounds the memory that a damaged journal can claim.
constexpr std::uint32_t LargestSlot = 1U << 26U;
constexpr std::string_view JournalMarker = "\xB5\x4A";

std::string EncodeHeader(const JournalHeader& header);
/// Returns nothing if `bytes` is not a header of JournalHeaderSize bytes whose check matches.
std::optional<JournalHeader> DecodeHeader(std::string_view bytes);

/// Returns how many bytes of a body the record takes.
std::size_t EncodedSize(const JournalRecord& record);
/// Appends the record to a body.
void EncodeRecord(const JournalRecord& record, std::string& body);
/// Removes the first record from `body` and sets `record`, whose text is a part of `body`.  Returns false if
/// `body` does not begin with a whole record of a known kind and channel.
bool DecodeRecord(std::string_view& body, JournalRecord& record);

/// Makes `frame` an empty frame, to whose end EncodeRecord appends records.
void BeginFrame(std::string& frame);
/// Fills in marker, size and check after the last record.
void EndFrame(std::string& frame);
/// Returns the body of the frame at the start of `bytes`, or nothing if there is no whole frame whose check
/// matches.
std::optional<std::string_view> FrameBody(std::string_view bytes);
/// Returns the size of the frame that `bytes` would begin with, or nothing if they cannot be the start of a
/// frame.  Needs JournalFrameOverhead bytes.
std::optional<std::size_t> FrameSize(std::string_view bytes);

}  // namespace tallyhorn
