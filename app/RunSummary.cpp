#include "app/RunSummary.h"

#include <cstdlib>
#include <fstream>

namespace tallyhorn {

void WriteRunSummary(const ReceivedMessages& messages, std::uint64_t netBiosReceived,
                     std::uint64_t syslogReceived) {
    const char* const file = std::getenv("TALLYHORN_SUMMARY");
    if (file == nullptr)
        return;
    std::ofstream stream(file);
    const auto write = [&stream](const char* name, std::uint64_t received, const MessageChannel& channel) {
        const auto rows = [&channel](EventList list) {
            return channel.Lists.at(static_cast<std::size_t>(list)).Size();
        };
        stream << name << ' ' << received << " received, " << channel.Messages.MessageCount()
               << " kept, rows: " << rows(InformationList) << " information, " << rows(WarningList)
               << " warning, " << rows(CriticalList) << " critical";
    };
    write("NetBIOS", netBiosReceived, messages.NetBios);
    write("\nSyslog", syslogReceived, messages.Syslog);
    stream << ", leaves: " << messages.Tree.LeafCount() << '\n';
}

}  // namespace tallyhorn
