// Reads arbitrary bytes as a journal, and journals that were damaged after they were written.  The reader
// must return only records of frames whose check matches, however the source cuts the bytes into pieces.  Of
// a damaged journal it must return exactly the records of the frames that are still whole.

#include "storage/JournalReader.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/Require.h"
#include "storage/JournalImage.h"
#include "tests/support/MemorySource.h"

namespace tallyhorn {
namespace {

using Type = JournalRecord::Type;

std::string Encoded(const JournalRecord& record) {
    std::string bytes;
    EncodeRecord(record, bytes);
    Require(bytes.size() == EncodedSize(record));
    return bytes;
}

/// What a reader returned of a journal.
struct Reading {
    bool HasHeader = false;
    std::vector<std::string> Records;  ///< as their encoded bytes
    std::uint64_t End = 0;
    std::uint64_t Damaged = 0;

    bool operator==(const Reading&) const = default;
};

/// Reads the journal and applies its records to an image.  Each message and arrival that the image then has
/// must have the text of one of the records.
Reading ReadAll(std::string_view bytes, std::size_t pieceSize) {
    MemorySource source(bytes, pieceSize);
    JournalReader reader(source);
    Reading reading{.HasHeader = reader.ReadHeader().has_value()};
    Require(reading.HasHeader == DecodeHeader(bytes.substr(0, JournalHeaderSize)).has_value());
    JournalImage image;
    std::multiset<std::string> texts;
    for (JournalRecord record; reader.Next(record); record = {}) {
        reading.Records.push_back(Encoded(record));
        texts.emplace(record.Text);
        image.Apply(record);
    }
    reading.End = reader.End();
    reading.Damaged = reader.Damaged();
    Require(source.Left() == 0 && reading.End <= bytes.size() && reading.Damaged <= reading.End);
    const auto takeText = [&texts](const std::string& text) {
        const auto found = texts.find(text);
        Require(found != texts.end());
        texts.erase(found);
    };
    for (const JournalMessage& message : image.TakeMessages())
        takeText(message.Text);
    for (const Channel channel : {Channel::NetBios, Channel::Syslog}) {
        for (const HeldArrival& arrival : image.TakeArrivals(channel))
            takeText(arrival.Text);
    }
    return reading;
}

/// Appends the records of a frame's body, encoded, until the first that cannot be decoded.  Returns how many
/// bytes are left of the body from there on.
std::size_t AppendRecords(std::string_view body, std::vector<std::string>& records) {
    JournalRecord record;
    for (std::size_t left = body.size(); left > 0; left = body.size()) {
        if (!DecodeRecord(body, record))
            return left;
        records.push_back(Encoded(record));
    }
    return 0;
}

/// Returns the bodies of all frames whose check matches, wherever they begin, even in another frame.
std::vector<std::string_view> AllBodies(std::string_view bytes) {
    std::vector<std::string_view> bodies;
    for (; !bytes.empty(); bytes.remove_prefix(1)) {
        if (const auto body = FrameBody(bytes))
            bodies.push_back(*body);
    }
    return bodies;
}

void RequireOnlyRecordsOf(const std::vector<std::string_view>& bodies, const Reading& reading) {
    std::vector<std::string> records;
    for (const std::string_view body : bodies)
        AppendRecords(body, records);
    std::sort(records.begin(), records.end());
    for (const std::string& record : reading.Records)
        Require(std::binary_search(records.begin(), records.end(), record));
}

/// Removes numbers and texts from the front of the fuzzer's input.
class Input {
public:
    explicit Input(std::string_view bytes) : left_(bytes) {}

    bool IsEmpty() const { return left_.empty(); }
    std::string_view Take(std::size_t size) {
        const std::string_view taken = left_.substr(0, size);
        left_.remove_prefix(taken.size());
        return taken;
    }
    std::size_t Byte() {
        const std::string_view taken = Take(1);
        return taken.empty() ? 0 : static_cast<unsigned char>(taken.front());
    }
    std::size_t Word() {
        const std::size_t high = Byte();
        return high << 8U | Byte();
    }

private:
    std::string_view left_;
};

/// A frame of a written journal and its place there.
struct WrittenFrame {
    std::size_t Offset = 0;
    std::string Bytes;
};

std::string WriteJournal(Input& input, std::vector<WrittenFrame>& frames) {
    std::string journal = EncodeHeader({.Complete = input.Byte() % 2 == 1, .BackupHash = input.Word()});
    const std::size_t count = input.Byte() % 32;
    std::uint64_t sequence = 0;
    while (frames.size() < count) {
        WrittenFrame frame{.Offset = journal.size()};
        BeginFrame(frame.Bytes);
        for (std::size_t records = input.Byte() % 4; records > 0; --records) {
            const auto kind = static_cast<Type>(1 + input.Byte() % 7);
            const std::size_t place = input.Byte();
            if (kind > Type::Saving) {
                frame.Bytes +=
                    input.Take(place);  // bytes that another version of the console may have written
                continue;
            }
            const bool hasText = kind == Type::Kept || kind == Type::ArrivalHeld;
            EncodeRecord({.Kind = kind,
                          .From = place % 2 == 0 ? Channel::NetBios : Channel::Syslog,
                          .Place = static_cast<Slot>(place / 2),
                          .Sequence = ++sequence,
                          .Hash = sequence,
                          .Text = hasText ? input.Take(input.Byte()) : std::string_view()},
                         frame.Bytes);
        }
        EndFrame(frame.Bytes);
        journal += frame.Bytes;
        frames.push_back(std::move(frame));
    }
    return journal;
}

/// Damages the journal as the rest of the input says.  Returns whether each byte that is left has kept its
/// place.
bool Damage(Input& input, std::string& journal) {
    bool inPlace = true;
    while (!input.IsEmpty() && !journal.empty()) {
        const std::size_t action = input.Byte() % 8;
        const std::size_t at = input.Word() % journal.size();
        const std::size_t value = input.Byte();
        if (action < 5) {
            journal[at] = static_cast<char>(value);
        } else if (action == 5) {
            journal.resize(at);
        } else if (action == 6) {
            journal.erase(at, value);
            inPlace = false;
        } else if (journal.size() < 1U << 16U) {
            journal.insert(value % journal.size(), journal.substr(at, input.Byte()));
            inPlace = false;
        }
    }
    return inPlace;
}

/// Requires that exactly the records of the frames that are whole in `damaged` were read.
void RequireWholeFrames(const Reading& reading, const std::vector<WrittenFrame>& frames,
                        std::string_view damaged) {
    std::vector<std::string> records;
    std::size_t end = JournalHeaderSize;
    std::size_t intact = JournalHeaderSize;
    for (const WrittenFrame& frame : frames) {
        if (frame.Offset > damaged.size() || !damaged.substr(frame.Offset).starts_with(frame.Bytes))
            continue;
        const std::string_view body = std::string_view(frame.Bytes).substr(JournalFrameOverhead);
        end = frame.Offset + frame.Bytes.size();
        intact += frame.Bytes.size() - AppendRecords(body, records);
    }
    Require(reading.Records == records);
    Require(!reading.HasHeader || (reading.End == end && reading.Damaged == end - intact));
}

}  // namespace
}  // namespace tallyhorn

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tallyhorn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t pieceSize = 1 + size / 3 + size % 7;
    const Reading reading = ReadAll(bytes, pieceSize);
    Require(reading == ReadAll(bytes, std::string_view::npos));
    RequireOnlyRecordsOf(AllBodies(bytes), reading);

    Input input(bytes);
    std::vector<WrittenFrame> frames;
    const std::string journal = WriteJournal(input, frames);
    std::string damaged = journal;
    const bool inPlace = Damage(input, damaged);
    const Reading rest = ReadAll(damaged, pieceSize);
    const std::vector<std::string_view> written = AllBodies(journal);
    RequireOnlyRecordsOf(written, rest);
    Require(rest.HasHeader == damaged.starts_with(journal.substr(0, JournalHeaderSize)));
    // A text can itself contain a whole frame, which the reader finds if the frame around it is damaged.
    if (inPlace && written.size() == frames.size())
        RequireWholeFrames(rest, frames, damaged);
    return 0;
}
