#pragma once

#include <string>
#include <vector>

#include "platform/Clock.h"
#include "reception/cvbMailslot.h"
#include "tools/CountingTransport.h"
#include "tools/SendArguments.h"
#include "tools/SendRun.h"

namespace tallyhorn {

/// One run that sends to a mailslot.
/// Owns its mailslot and the counts; for one thread.
class MailslotRun final : public SendRun {
public:
    /// All have to outlive it.
    MailslotRun(const SendArguments& arguments, MailslotTransport& transport, const Clock& clock);

    /// Each text as the engine sends it, in several datagrams where it is long; or, where the arguments ask
    /// for that, as one datagram with a NUL behind it.
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
