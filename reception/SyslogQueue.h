#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyhorn {

/// The datagrams that come during a pause, at positions from 1 on.  When all positions are taken it goes
/// round and overwrites the oldest, and every time it comes to the last position again it drops the datagram.
/// User-interface thread only.
class SyslogQueue {
public:
    static constexpr std::size_t Positions = 30000;
    /// In bytes; a datagram above that is dropped, since 30,000 of the largest would take two gigabytes.
    static constexpr std::size_t DefaultLimit = std::size_t{64} << 20U;

    explicit SyslogQueue(std::size_t limit = DefaultLimit) : limit_(limit) {}

    void Add(std::string_view text);
    /// What waits, in the order of the positions; nothing waits afterwards.
    std::vector<std::string> Take();

    /// Datagrams that came since the last Take; more than wait, perhaps.
    std::uint64_t Count() const { return count_; }
    /// Datagrams that were overwritten or dropped since the start.
    std::uint64_t Lost() const { return lost_; }

private:
    void Put(std::size_t position, std::string_view text);

    const std::size_t limit_;
    std::vector<std::optional<std::string>> texts_;  ///< position 1 first; none where there was no room
    std::uint64_t count_ = 0;
    std::size_t bytes_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace tallyhorn
