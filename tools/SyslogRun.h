#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tools/DemoFeed.h"
#include "tools/SendArguments.h"

namespace tallyhorn {

/// One run that sends by syslog: what is asked for, and what the system took of it.
/// Owns the counts; for one thread.
class SyslogRun {
public:
    enum class Outcome { Sent, NotTaken, Refused };

    /// Both have to outlive it.
    SyslogRun(const SendArguments& arguments, DatagramSender& sender);

    /// Each text as a datagram, as it is.
    Outcome Send(const std::vector<std::string>& texts);
    /// A feed as the arguments ask for it, until its end or until the program is asked to end.
    Outcome SendDemo();

    std::uint64_t Datagrams() const { return datagrams_; }
    std::uint64_t Bytes() const { return bytes_; }
    /// Of a feed.
    const std::array<std::uint64_t, DemoTypeNames.size()>& ByType() const { return byType_; }

private:
    std::vector<DemoText> NextTexts(DemoFeed& feed, std::uint64_t count) const;

    const SendArguments& arguments_;
    DatagramSender& sender_;
    std::uint64_t datagrams_ = 0;
    std::uint64_t bytes_ = 0;
    std::array<std::uint64_t, DemoTypeNames.size()> byType_{};
};

}  // namespace tallyhorn
