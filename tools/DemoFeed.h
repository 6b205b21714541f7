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

/// What a made-up notification's type of event is; Other stands for an empty or unknown one.
enum class DemoType { Information, Warning, Error, FailureAudit, SuccessAudit, Other };
inline constexpr std::array<std::string_view, 6> DemoTypeNames = {"Information",   "Warning",       "Error",
                                                                  "Failure Audit", "Success Audit", "other"};
/// A number for each type.
using DemoTypeCounts = std::array<std::uint64_t, DemoTypeNames.size()>;

/// Owns one made-up notification, whole, and tells which type of event it is.
/// A plain value, safe in any one thread.
struct DemoText {
    std::string Text;
    DemoType Type = DemoType::Information;
};

/// An endless, lifelike feed of notifications, the same on every machine for the same seed.
/// Owns its random numbers and its clock, which starts at a fixed day; for one thread.
class DemoFeed {
public:
    /// One text in this many is too long for one datagram.  A console that reads all parts of a text at once
    /// loses it, so a feed must keep them rare.
    static constexpr std::size_t LongOneIn = 250;

    explicit DemoFeed(std::uint64_t seed);

    /// For the mailslot: mostly 300 to 390 bytes, never a NUL inside.
    DemoText Next();
    /// As a syslog datagram of about that length, which ends with the description.
    DemoText NextSyslog();

private:
    struct Event {
        AlarmRecord Record;
        DemoType Type = DemoType::Information;
        bool Odd = false;
    };
    /// Of a text that goes into one mailslot datagram.
    static constexpr std::size_t LongestWhole = 390;

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
