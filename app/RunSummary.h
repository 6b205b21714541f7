#pragma once

#include <cstdint>

#include "views/messages/ReceivedMessages.h"

namespace tallyhorn {

/// Writes how many notifications the console has received and how many messages and rows it has, for scripts
/// that run the console unattended.  Writes to the file that the environment variable TALLYHORN_SUMMARY
/// names, and does nothing if it names none.
void WriteRunSummary(const ReceivedMessages& messages, std::uint64_t netBiosReceived,
                     std::uint64_t syslogReceived);

}  // namespace tallyhorn
