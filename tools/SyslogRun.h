#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tools/DemoFeed.h"
#include "tools/SendArguments.h"
#include "tools/SendRun.h"

namespace tallyhorn {

/// One run that sends by syslog.
/// Owns the counts, and nothing else; for one thread.
class SyslogRun final : public SendRun {
public:
    /// Both have to outlive it.
    SyslogRun(const SendArguments& arguments, DatagramSender& sender);

    /// Each text as a datagram, as it is.
    Outcome Send(const std::vector<std::string>& texts) override;
    Outcome SendDemo() override;

private:
    std::vector<DemoText> NextTexts(DemoFeed& feed, std::uint64_t count) const;

    const SendArguments& arguments_;
    DatagramSender& sender_;
};

}  // namespace tallyhorn
