#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/DemoFeed.h"

namespace tallyhorn {

/// What a run has sent so far.
struct SendCounts {
    std::optional<std::uint64_t> Texts;  ///< empty for syslog, which sends each text as one datagram
    std::uint64_t Datagrams = 0;
    std::uint64_t Bytes = 0;
    DemoTypeCounts ByType{};  ///< counted only by SendDemo
};

/// Sends what the command line asks for, and counts it.
class SendRun {
public:
    /// NotTaken: the system did not accept a text.  Refused: the system reports that nobody listens.
    enum class Outcome { Sent, NotTaken, Refused };

    SendRun() = default;
    virtual ~SendRun() = default;
    SendRun(const SendRun&) = delete;
    SendRun& operator=(const SendRun&) = delete;

    virtual Outcome Send(const std::vector<std::string>& texts) = 0;
    /// Sends texts of a DemoFeed until the Count of the arguments is reached or the user asks the program to
    /// end.
    virtual Outcome SendDemo() = 0;

    const SendCounts& Counts() const { return counts_; }

protected:
    SendCounts counts_;
};

}  // namespace tallyhorn
