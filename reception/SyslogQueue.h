#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "views/messages/ArrivalJournal.h"

namespace tallyhorn {

/// Owns the datagrams that arrive during a pause, at the positions 1 to 30,000.  Once all positions are
/// taken, further datagrams overwrite those from position 1 on.  compatibility: the last position is never
/// overwritten; the 60,000th datagram, the 90,000th and so on are dropped instead.
class SyslogQueue {
public:
    static constexpr std::size_t Positions = 30000;
    /// The most bytes that the queue holds; datagrams beyond this limit are dropped. 30,000 datagrams of the
    /// largest size would take two gigabytes.
    static constexpr std::size_t DefaultLimit = std::size_t{64} << 20U;

    /// `journal` records the queued datagrams and must outlive the queue.
    explicit SyslogQueue(ArrivalJournal& journal, std::size_t limit = DefaultLimit)
        : journal_(journal), limit_(limit) {}

    void Add(std::string_view text);
    /// Removes all queued datagrams and returns them in the order of their positions.  The journal holds each
    /// of them until the caller calls ArrivalJournal::BeginHandling.
    std::vector<HeldArrival> Take();

    /// Returns how many datagrams were added since the last Take, which may be more than are queued.
    std::uint64_t Count() const { return count_; }
    /// Returns how many datagrams were overwritten or dropped since the start.
    std::uint64_t Lost() const { return lost_; }

private:
    void Put(std::size_t position, std::string_view text);

    ArrivalJournal& journal_;
    const std::size_t limit_;
    std::vector<std::optional<HeldArrival>> texts_;  ///< element 0 is position 1; empty if dropped
    std::uint64_t count_ = 0;
    std::size_t bytes_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace tallyhorn
