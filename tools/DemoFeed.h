#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "records/AlarmDate.h"
#include "records/AlarmRecord.h"

namespace tallyhorn {

/// The event type of a made-up notification.  Other is an empty or unknown type text.
enum class DemoType { Information, Warning, Error, FailureAudit, SuccessAudit, Other };
inline constexpr std::array<std::string_view, 6> DemoTypeNames = {"Information",   "Warning",       "Error",
                                                                  "Failure Audit", "Success Audit", "other"};
/// The number of notifications of each type.
using DemoTypeCounts = std::array<std::uint64_t, DemoTypeNames.size()>;

/// The whole text of a made-up notification, and its event type.
struct DemoText {
    std::string Text;
    DemoType Type = DemoType::Information;
};

/// Makes an endless series of lifelike notifications, which depends on the seed alone, not on the machine or
/// the clock.  The dates start at a fixed day.
class DemoFeed {
public:
    /// One text in 250 is too long for one mailslot datagram.  The share is small because the console loses a
    /// long text if it reads all parts of the text in one poll.
    static constexpr std::size_t TextsPerLongOne = 250;

    explicit DemoFeed(std::uint64_t seed);

    /// Returns a mailslot notification without NULs, mostly of 300 to 390 bytes.
    DemoText Next();
    /// Returns a syslog datagram of at least 300 bytes, which ends with the description.
    DemoText NextSyslog();

private:
    struct Event {
        AlarmRecord Record;
        DemoType Type = DemoType::Information;
        bool Odd = false;
    };
    /// The greatest length of a text that is sent in one mailslot datagram.
    static constexpr std::size_t LongestUnsplit = 390;

    Event NextEvent();
    std::size_t NextLength();
    std::size_t Below(std::size_t limit);
    template <typename Table>
    const auto& OneOf(const Table& table) {
        return table[Below(table.size())];
    }
    AlarmRecord LifelikeRecord(DemoType type);
    void MakeOdd(AlarmRecord& record, DemoType& type);
    std::string Prose(std::size_t length);

    std::mt19937_64 random_;
    AlarmDate now_;
};

}  // namespace tallyhorn
