#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/DemoFeed.h"

namespace tallyhorn {

/// What went out so far.  A plain value.
struct SendCounts {
    std::optional<std::uint64_t> Texts;  ///< where a text can be several datagrams
    std::uint64_t Datagrams = 0;
    std::uint64_t Bytes = 0;
    DemoTypeCounts ByType{};  ///< of a demo
};

/// One run of tallyhorn-send over one way of sending.
/// Owns the counts; for one thread.
class SendRun {
public:
    /// The system did not take a text, or told that nobody listens.
    enum class Outcome { Sent, NotTaken, Refused };

    SendRun() = default;
    virtual ~SendRun() = default;
    SendRun(const SendRun&) = delete;
    SendRun& operator=(const SendRun&) = delete;

    virtual Outcome Send(const std::vector<std::string>& texts) = 0;
    /// A feed as the arguments ask for it, until its end or until the program is asked to end.
    virtual Outcome SendDemo() = 0;

    const SendCounts& Counts() const { return counts_; }

protected:
    SendCounts counts_;
};

}  // namespace tallyhorn
