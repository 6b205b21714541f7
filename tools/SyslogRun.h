#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tools/DemoFeed.h"
#include "tools/SendArguments.h"
#include "tools/SendRun.h"

namespace tallyhorn {

/// A run that sends syslog datagrams.
class SyslogRun final : public SendRun {
public:
    /// Both arguments must outlive the run.
    SyslogRun(const SendArguments& arguments, DatagramSender& sender);

    /// Sends each text unchanged as one datagram.
    Outcome Send(const std::vector<std::string>& texts) override;
    Outcome SendDemo() override;

private:
    std::vector<DemoText> NextTexts(DemoFeed& feed, std::uint64_t count) const;

    const SendArguments& arguments_;
    DatagramSender& sender_;
};

}  // namespace tallyhorn
