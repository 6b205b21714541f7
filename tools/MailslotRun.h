#pragma once

#include <string>
#include <vector>

#include "platform/Clock.h"
#include "reception/cvbMailslot.h"
#include "tools/CountingTransport.h"
#include "tools/SendArguments.h"
#include "tools/SendRun.h"

namespace tallyhorn {

/// A run that sends to a mailslot.
class MailslotRun final : public SendRun {
public:
    /// All arguments must outlive the run.
    MailslotRun(const SendArguments& arguments, MailslotTransport& transport, const Clock& clock);

    /// Sends each text as the engine does: a long one in several datagrams.  With --raw, sends each as one
    /// datagram followed by a NUL.
    Outcome Send(const std::vector<std::string>& texts) override;
    Outcome SendDemo() override;

private:
    Outcome SendRaw(const std::vector<std::string>& datagrams);
    bool SendOne(std::string text);
    Outcome Count(bool taken);

    const SendArguments& arguments_;
    CountingTransport counting_;
    cvbMailslot mailslot_;
};

}  // namespace tallyhorn
